#include "platform/linux/linux_system_info.h"

#include "platform/linux/user_settings.h"
#include "platform/posix/primary_ipv4.h"

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace lumbrine {

std::optional<std::string> LinuxSystemInfo::environment(const std::string& name) const {
    const char* value = std::getenv(name.c_str()); // NOLINT(concurrency-mt-unsafe): nobody changes the environment
    if (value == nullptr) return std::nullopt;
    return value;
}

std::vector<std::string> LinuxSystemInfo::preferredLanguages() const {
    return languagesOf([this](const std::string& name) { return environment(name); });
}

std::optional<std::string> LinuxSystemInfo::computerName() const {
    std::ifstream file(machineInfo);
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (auto name = prettyHostName(text)) return name;

    std::array<char, 256> host{};
    if (::gethostname(host.data(), host.size() - 1) != 0 || host[0] == 0) return std::nullopt;
    return host.data();
}

std::optional<std::string> LinuxSystemInfo::stateFolder() const {
    return stateFolderIn([this](const std::string& name) { return environment(name); });
}

std::optional<std::string> LinuxSystemInfo::primaryIPv4() const {
    return choosePrimaryIPv4(listIPv4Interfaces());
}

} // namespace lumbrine
