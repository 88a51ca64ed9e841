#include "platform/linux/firewall.h"

#include <fstream>

namespace lumbrine {

std::optional<std::string> activeFirewall(const std::filesystem::path& root) {
    std::ifstream settings(root / "etc/ufw/ufw.conf");
    for (std::string line; std::getline(settings, line);)
        if (line == "ENABLED=yes") return "ufw";
    return std::nullopt;
}

} // namespace lumbrine
