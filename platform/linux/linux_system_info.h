// This computer, as Linux tells about it: the environment, /etc/machine-info, the host name, the network interfaces.
#pragma once

#include "platform/api/system_info.h"

#include <string>

namespace lumbrine {

// Asks the system anew at each call. Any thread.
class LinuxSystemInfo final : public SystemInfo {
public:
    LinuxSystemInfo() = default;

    // For tests: another file in the place of /etc/machine-info.
    explicit LinuxSystemInfo(std::string machineInfoFile) : machineInfo(std::move(machineInfoFile)) {}

    std::optional<std::string> environment(const std::string& name) const override;
    std::vector<std::string> preferredLanguages() const override;

    // The pretty host name if the computer was given one, else its host name.
    std::optional<std::string> computerName() const override;

    std::optional<std::string> primaryIPv4() const override;

private:
    const std::string machineInfo = "/etc/machine-info";
};

} // namespace lumbrine
