// Finding services through the Avahi daemon.
#pragma once

#include "platform/api/service_discovery.h"

namespace lumbrine {

// Each search is a client of the daemon with a thread of its own. A service is told with its IPv4 address if it has
// one, else with its IPv6 address (a link-local one with its interface: "fe80::1%2"); once more after it was gone.
class AvahiBrowser final : public ServiceBrowser {
public:
    std::unique_ptr<ServiceSearch> browse(const std::string& type,
                                          std::function<void(const FoundService&)> found) override;
};

} // namespace lumbrine
