// SystemInfo from Linux: the environment, /etc/machine-info, the host name and the network interfaces.
#pragma once

#include "platform/api/system_info.h"

#include <string>

namespace lumbrine {

// Every call asks the system; nothing is cached. Any thread.
class LinuxSystemInfo final : public SystemInfo {
public:
    LinuxSystemInfo() = default;

    // For tests: reads this file instead of /etc/machine-info.
    explicit LinuxSystemInfo(std::string machineInfo) : machineInfo(std::move(machineInfo)) {}

    std::optional<std::string> environment(const std::string& name) const override;
    std::vector<std::string> preferredLanguages() const override;

    // PRETTY_HOSTNAME if the computer has one, else its host name.
    std::optional<std::string> computerName() const override;

    std::optional<std::string> primaryIPv4() const override;

    // The receiver's folder for what it keeps about its runs. Absent when none is known; it may not exist yet.
    std::optional<std::string> stateFolder() const;

private:
    const std::string machineInfo = "/etc/machine-info";
};

} // namespace lumbrine
