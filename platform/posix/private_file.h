// Files that only the user may read.
#pragma once

#include <expected>
#include <optional>
#include <string>

namespace lumbrine {

// Absent when there is no such file, or it has more than `most` bytes.
std::optional<std::string> readSmallFile(const std::string& path, std::size_t most);

// Writes a file that only the user can read, and makes the folders that are missing. A reader gets the old text or the
// new one, never a part. The error is a text for the user.
std::expected<void, std::string> replacePrivateFile(const std::string& path, const std::string& text);

} // namespace lumbrine
