#include "platform/recorded/recorded_computer.h"

#include <utility>

namespace lumbrine {

using blackbox::Kind;
using blackbox::textBytes;

std::optional<std::string> RecordedSystemInfo::environment(const std::string& name) const {
    auto value = system.environment(name);
    if (name.starts_with("QV_") || name.starts_with("LUMBRINE_")) note(name, value);
    return value;
}

std::optional<std::string> RecordedSystemInfo::computerName() const {
    auto name = system.computerName();
    note("computer", name);
    return name;
}

std::optional<std::string> RecordedSystemInfo::primaryIPv4() const {
    auto address = system.primaryIPv4();
    note("address", address);
    return address;
}

void RecordedSystemInfo::note(std::string_view name, const std::optional<std::string>& value) const {
    if (value) {
        recorder.note(Kind::fact, 0, {textBytes(name), textBytes("="), textBytes(*value)});
    } else {
        recorder.note(Kind::fact, 0, {textBytes(name)});
    }
}

std::unique_ptr<Advertisement> RecordedAdvertiser::publish(AdvertisedService service) {
    service.onChange = [this, change = std::move(service.onChange)](const std::optional<std::string>& name) {
        recorder.note(Kind::announced, 0, {textBytes(name ? std::string_view(*name) : std::string_view())});
        if (change) change(name);
    };
    return advertiser.publish(std::move(service));
}

} // namespace lumbrine
