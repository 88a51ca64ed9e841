// Finds services through the Avahi daemon.
#pragma once

#include "platform/api/service_discovery.h"

namespace lumbrine {

// Each search is a separate client of the daemon with its own thread. A service is reported with its IPv4 address if it
// has one, else with its IPv6 address; a link-local one includes the interface ("fe80::1%2"). A service that disappears
// and comes back is reported again.
class AvahiBrowser final : public ServiceBrowser {
public:
    std::unique_ptr<ServiceSearch> browse(const std::string& type,
                                          std::function<void(const FoundService&)> found) override;
};

} // namespace lumbrine
