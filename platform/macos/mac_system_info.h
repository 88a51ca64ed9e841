// SystemInfo from macOS.
#pragma once

#include "platform/api/system_info.h"

namespace lumbrine {

// Every call asks the system; nothing is cached. Any thread.
class MacSystemInfo final : public SystemInfo {
public:
    std::optional<std::string> environment(const std::string& name) const override;
    std::vector<std::string> preferredLanguages() const override;

    // The name in the system's sharing settings.
    std::optional<std::string> computerName() const override;

    std::optional<std::string> primaryIPv4() const override;

    // The receiver's folder for what it keeps about its runs. Absent when none is known; it may not exist yet.
    std::optional<std::string> stateFolder() const;
};

} // namespace lumbrine
