#include "platform/linux/service_status.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <utility>

namespace lumbrine {

namespace {

bool isAddress(const std::string& place) {
    return place.size() > 1 && place.size() < sizeof(sockaddr_un::sun_path) && (place[0] == '/' || place[0] == '@');
}

} // namespace

ServiceStatus::ServiceStatus(const SystemInfo& system)
    : place(system.environment("NOTIFY_SOCKET").value_or("")),
      fd(isAddress(place) ? ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0) : -1) {}

ServiceStatus::~ServiceStatus() {
    if (fd >= 0) ::close(fd);
}

void ServiceStatus::tell(const std::string& sentence) {
    if (!isWanted() || std::exchange(last, sentence) == sentence) return;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, place.data(), place.size());
    if (place[0] == '@') address.sun_path[0] = 0; // an abstract address
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + place.size());
    const std::string message = "STATUS=" + sentence;
    ::sendto(fd, message.data(), message.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
             reinterpret_cast<const sockaddr*>(&address), length);
}

} // namespace lumbrine
