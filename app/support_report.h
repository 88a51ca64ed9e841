// The file for those who help: "Save report…" in the window, and `lumbrine-headless --check --save FILE`.
#pragma once

#include "platform/linux/linux_system_info.h"

#include <expected>
#include <filesystem>
#include <string>

namespace lumbrine {

// Where the receiver of this user records, or recorded last.
std::filesystem::path recordingPath(const LinuxSystemInfo& system);

// Writes what is recorded there, without names and addresses, with the lines of `diagnosis` at its end: see
// docs/support.md. Otherwise what is wrong, as half a sentence behind the path that it is about.
std::expected<void, std::string> saveSupportReport(const std::filesystem::path& recording,
                                                   const std::filesystem::path& file, const std::string& diagnosis);

} // namespace lumbrine
