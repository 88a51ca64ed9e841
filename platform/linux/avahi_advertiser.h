// Publishes services through the Avahi daemon.
#pragma once

#include "platform/api/service_discovery.h"

namespace lumbrine {

// Each advertisement is a separate client of the daemon with its own thread. When another service has the name, "name
// #2" is tried, and so on. After a restart of the daemon the original name is tried first.
class AvahiAdvertiser final : public ServiceAdvertiser {
public:
    std::unique_ptr<Advertisement> publish(AdvertisedService service) override;
};

} // namespace lumbrine
