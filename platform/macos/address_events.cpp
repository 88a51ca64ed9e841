#include "platform/posix/address_events.h"

#include "platform/posix/system_call.h"

#include <net/route.h>
#include <sys/socket.h>

#include <cstddef>
#include <cstring>

namespace lumbrine {

int openAddressEvents() {
    return orError(::socket(PF_ROUTE, SOCK_RAW, 0));
}

bool tellsOfAddresses(std::span<const std::uint8_t> received) {
    // Each message begins with its length and its type; most are about routes.
    while (received.size() > offsetof(rt_msghdr, rtm_type)) {
        std::uint16_t length = 0;
        std::memcpy(&length, received.data() + offsetof(rt_msghdr, rtm_msglen), sizeof length);
        const std::uint8_t type = received[offsetof(rt_msghdr, rtm_type)];
        if (type == RTM_NEWADDR || type == RTM_DELADDR) return true;
        if (length <= offsetof(rt_msghdr, rtm_type) || length >= received.size()) return false;
        received = received.subspan(length);
    }
    return false;
}

} // namespace lumbrine
