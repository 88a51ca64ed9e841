// Tells systemd in one sentence how a service is doing; `systemctl status` shows it.
#pragma once

#include "platform/api/system_info.h"

#include <string>

namespace lumbrine {

class ServiceStatus {
public:
    // Where nobody has asked for the status (NOTIFY_SOCKET is not set), the rest does nothing.
    explicit ServiceStatus(const SystemInfo& system);
    ~ServiceStatus();
    ServiceStatus(const ServiceStatus&) = delete;
    ServiceStatus& operator=(const ServiceStatus&) = delete;

    bool isWanted() const { return fd >= 0; }

    // Sends a sentence that is another one than the last. Never waits.
    void tell(const std::string& sentence);

private:
    const std::string place;
    const int fd;
    std::string last;
};

} // namespace lumbrine
