// Asks for names of hosts through the Avahi daemon.
#pragma once

#include "platform/api/host_names.h"

namespace lumbrine {

// Each search is a separate client of the daemon with its own thread, until it is destroyed.
class AvahiHostNames final : public HostNames {
public:
    std::unique_ptr<HostNameSearch> find(const std::string& address,
                                         std::function<void(const std::string& name)> found) override;
};

} // namespace lumbrine
