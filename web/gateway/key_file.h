// The files that keep keys: the pairing key of browsers, and those that the receiver's clients seal with.
#pragma once

#include "platform/linux/user_settings.h"
#include "seal/pairing_key.h"

#include <expected>
#include <optional>
#include <string>

namespace lumbrine::web {

// In the folder of Lumbrine's state; absent when there is none. The second file is the receiver's.
std::optional<std::string> keyFilePath(const EnvironmentLookup& environment);
std::optional<std::string> sealKeyFilePath(const EnvironmentLookup& environment);

// The key in the text of a key file: the key alone on one line.
std::optional<PairingKey> keyInFile(std::string_view text);

// Absent when there is no such file or it has no key.
std::optional<PairingKey> readKey(const std::string& path);

// The first key in a file of the receiver's keys. One with a key alone will do as well.
std::optional<PairingKey> readSealKey(const std::string& path);

// Replaces the file's key by a new one from the system's random numbers. Only the user can read the file. The error is
// a text for the user.
std::expected<PairingKey, std::string> makeKey(const std::string& path);

} // namespace lumbrine::web
