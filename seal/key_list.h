// The receiver's pairing keys with their names, and the text of the file that keeps them: a line for each, with the key
// and its name.
#pragma once

#include "seal/pairing_key.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::seal {

struct NamedKey {
    PairingKey key;
    std::string name; // one line of at most maxNameBytes

    bool operator==(const NamedKey&) const = default;
};

inline constexpr std::size_t maxKeys = 16;
inline constexpr std::size_t maxNameBytes = 64;

inline constexpr const char* keyFileName = "/keys"; // in the user's folder for state
inline constexpr std::size_t longestKeyFile = 4096;

// Lines without a key are left out, and so are keys behind the first maxKeys.
std::vector<NamedKey> keysIn(const std::string& text);

std::string textOf(const std::vector<NamedKey>& keys);

// A name as a key can have it: one line, cut to its length by whole characters.
std::string keyName(std::string_view text);

} // namespace lumbrine::seal
