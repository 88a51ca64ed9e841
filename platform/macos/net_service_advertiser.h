// Announcing services by the system's Bonjour.
#pragma once

#include "platform/api/runtime.h"
#include "platform/api/service_discovery.h"
#include "platform/macos/announcement_keeper.h"

#include <functional>
#include <memory>
#include <vector>

namespace lumbrine {

// Main thread, whose event loop carries the system's reports. A name that is taken gets a number from the system.
class NetServiceAdvertiser final : public ServiceAdvertiser {
public:
    explicit NetServiceAdvertiser(Runtime& rt) : runtime(rt) {}

    // Gets the code of each failure that is news (announcement_failure.h). Set before anything is published.
    std::function<void(int code)> onRefused;

    std::unique_ptr<Advertisement> publish(AdvertisedService service) override;

    // Announces anew whatever is announced: the network may be another one than before.
    void renew();

private:
    Runtime& runtime;
    std::vector<std::weak_ptr<AnnouncementKeeper>> keepers;
};

} // namespace lumbrine
