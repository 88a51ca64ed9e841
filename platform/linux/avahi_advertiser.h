// Announcing services through the Avahi daemon.
#pragma once

#include "platform/api/service_discovery.h"

namespace lumbrine {

// Each advertisement is a client of the daemon with a thread of its own. A name that is taken becomes "name #2" and so
// on; after the daemon was gone the first name is tried again.
class AvahiAdvertiser final : public ServiceAdvertiser {
public:
    std::unique_ptr<Advertisement> publish(AdvertisedService service) override;
};

} // namespace lumbrine
