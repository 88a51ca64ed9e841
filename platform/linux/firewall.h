// The firewall that a desktop user switches on.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace lumbrine {

// "ufw" when it is switched on, as far as its settings below `root` tell. Its rules are for the administrator's eyes.
std::optional<std::string> activeFirewall(const std::filesystem::path& root = "/");

} // namespace lumbrine
