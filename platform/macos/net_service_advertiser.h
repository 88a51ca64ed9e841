// Announces services with the system's Bonjour.
#pragma once

#include "platform/api/runtime.h"
#include "platform/api/service_discovery.h"
#include "platform/macos/announcement_keeper.h"

#include <functional>
#include <memory>
#include <vector>

namespace lumbrine {

// Main thread; its event loop delivers the system's reports. When a name is taken, the system appends a number.
class NetServiceAdvertiser final : public ServiceAdvertiser {
public:
    explicit NetServiceAdvertiser(Runtime& runtime) : runtime(runtime) {}

    // Called with the code of each new failure (AnnouncementKeeper says which are new; announcement_failure.h has the
    // text for a code). Set it before the first `publish`.
    std::function<void(int code)> onRefused;

    std::unique_ptr<Advertisement> publish(AdvertisedService service) override;

    // Announces all published services again, for use when the network may have changed.
    void renew();

private:
    Runtime& runtime;
    std::vector<std::weak_ptr<AnnouncementKeeper>> keepers;
};

} // namespace lumbrine
