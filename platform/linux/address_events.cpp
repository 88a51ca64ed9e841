#include "platform/posix/address_events.h"

#include "platform/posix/system_call.h"

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

namespace lumbrine {

int openAddressEvents() {
    const int fd = orError(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
    if (fd < 0) return fd;
    sockaddr_nl wanted{};
    wanted.nl_family = AF_NETLINK;
    wanted.nl_groups = RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR;
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&wanted), sizeof wanted) == 0) return fd;
    const int failure = -errno;
    ::close(fd);
    return failure;
}

bool tellsOfAddresses(std::span<const std::uint8_t> received) {
    nlmsghdr header;
    while (received.size() >= sizeof header) {
        std::memcpy(&header, received.data(), sizeof header);
        if (header.nlmsg_type == RTM_NEWADDR || header.nlmsg_type == RTM_DELADDR) return true;
        const std::size_t size = NLMSG_ALIGN(header.nlmsg_len);
        if (header.nlmsg_len < sizeof header || size >= received.size()) return false;
        received = received.subspan(size);
    }
    return false;
}

} // namespace lumbrine
