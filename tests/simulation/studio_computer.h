// The computer that a receiver runs on: its name and its address.
#pragma once

#include "platform/api/system_info.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine::simulation {

class StudioComputer final : public SystemInfo {
public:
    explicit StudioComputer(std::string itsAddress) : address(std::move(itsAddress)) {}

    std::optional<std::string> environment(const std::string&) const override { return std::nullopt; }
    std::vector<std::string> preferredLanguages() const override { return {"en"}; }
    std::optional<std::string> computerName() const override { return "Studio"; }
    std::optional<std::string> primaryIPv4() const override { return address; }

private:
    const std::string address;
};

} // namespace lumbrine::simulation
