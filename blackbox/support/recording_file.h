// Files that hold a recording: the ring itself, or a copy of it that is compressed with zstd.
#pragma once

#include "base/bytes.h"

#include <expected>
#include <filesystem>
#include <string>

namespace lumbrine::blackbox {

// The bytes of the ring. Otherwise what is wrong, as half a sentence for the user: "is no recording".
std::expected<Bytes, std::string> loadRecording(const std::filesystem::path& path);

// Writes a compressed copy, which only this user may read. Otherwise what is wrong.
std::expected<void, std::string> saveRecording(const std::filesystem::path& path, ByteView ring);

// Writes bytes as they are, likewise.
std::expected<void, std::string> writePrivately(const std::filesystem::path& path, ByteView bytes);

} // namespace lumbrine::blackbox
