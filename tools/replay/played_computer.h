// The computer as a recording has it, and what became of the receiver's announcement.
#pragma once

#include "platform/api/service_discovery.h"
#include "platform/api/system_info.h"
#include "tools/replay/tape.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace lumbrine::blackbox {

class PlayedComputer final : public SystemInfo {
public:
    // The records outlive it.
    explicit PlayedComputer(const std::vector<Record>& records);

    std::optional<std::string> environment(const std::string& name) const override { return first(name); }
    std::vector<std::string> preferredLanguages() const override { return {}; } // the programs ask, not the receiver
    std::optional<std::string> computerName() const override { return first("computer"); }
    std::optional<std::string> primaryIPv4() const override; // as often as it was asked, then the last

private:
    std::optional<std::string> first(const std::string& name) const;

    std::map<std::string, std::vector<std::optional<std::string>>> facts;
    mutable std::size_t addresses = 0; // asked for
};

class PlayedAdvertiser final : public ServiceAdvertiser {
public:
    std::unique_ptr<Advertisement> publish(AdvertisedService service) override;

    // Tells the receiver what a record tells.
    void play(const Record& announced) const;

private:
    std::shared_ptr<AdvertisedService> published;
};

} // namespace lumbrine::blackbox
