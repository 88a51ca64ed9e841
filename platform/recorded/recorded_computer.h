// The computer and its announcements on the network, with a record of what the receiver learned of them.
#pragma once

#include "platform/api/service_discovery.h"
#include "platform/api/system_info.h"
#include "platform/recorded/recorder.h"

#include <string_view>

namespace lumbrine {

class RecordedSystemInfo final : public SystemInfo {
public:
    // Both outlive it.
    RecordedSystemInfo(const SystemInfo& recorded, const Recorder& itsRecorder)
        : system(recorded), recorder(itsRecorder) {}

    // Only the receiver's own variables are recorded ("QV_...", "LUMBRINE_..."), which hold no secret.
    std::optional<std::string> environment(const std::string& name) const override;
    std::vector<std::string> preferredLanguages() const override { return system.preferredLanguages(); }
    std::optional<std::string> computerName() const override;
    std::optional<std::string> primaryIPv4() const override;

private:
    void note(std::string_view name, const std::optional<std::string>& value) const;

    const SystemInfo& system;
    const Recorder& recorder;
};

class RecordedAdvertiser final : public ServiceAdvertiser {
public:
    // Both outlive it.
    RecordedAdvertiser(ServiceAdvertiser& recorded, const Recorder& itsRecorder)
        : advertiser(recorded), recorder(itsRecorder) {}

    std::unique_ptr<Advertisement> publish(AdvertisedService service) override;

private:
    ServiceAdvertiser& advertiser;
    const Recorder& recorder;
};

} // namespace lumbrine
