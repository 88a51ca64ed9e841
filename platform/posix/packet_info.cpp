#include "platform/posix/packet_info.h"

#include "platform/posix/system_call.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <cstring>

namespace lumbrine {

namespace {

template <typename Info>
void put(msghdr& message, int level, int type, const Info& info) {
    message.msg_controllen = CMSG_SPACE(sizeof info);
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = level;
    header->cmsg_type = type;
    header->cmsg_len = CMSG_LEN(sizeof info);
    std::memcpy(CMSG_DATA(header), &info, sizeof info);
}

} // namespace

int setReportsOwnAddress(int fd) {
    return setSocketOption(fd, IPPROTO_IPV6, IPV6_RECVPKTINFO, 1);
}

void PacketInfo::receiveWith(msghdr& message) {
    static_assert(sizeof room >= CMSG_SPACE(sizeof(in6_pktinfo)));
    message.msg_control = room.data();
    message.msg_controllen = sizeof room;
}

OwnAddress PacketInfo::sentTo(msghdr& message) {
    OwnAddress address{};
    for (cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr; header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != IPPROTO_IPV6 || header->cmsg_type != IPV6_PKTINFO) continue;
        in6_pktinfo info;
        std::memcpy(&info, CMSG_DATA(header), sizeof info);
        std::memcpy(address.data(), &info.ipi6_addr, sizeof info.ipi6_addr);
    }
    return address;
}

void PacketInfo::sendWith(msghdr& message, const OwnAddress& from) {
    message.msg_control = room.data();
    in6_addr host;
    std::memcpy(&host, from.data(), sizeof host);
    if (IN6_IS_ADDR_V4MAPPED(&host)) {
        in_pktinfo info{};
        std::memcpy(&info.ipi_spec_dst, &host.s6_addr[12], sizeof info.ipi_spec_dst);
        put(message, IPPROTO_IP, IP_PKTINFO, info);
    } else {
        in6_pktinfo info{}; // no interface: the system finds the way by the peer's address
        info.ipi6_addr = host;
        put(message, IPPROTO_IPV6, IPV6_PKTINFO, info);
    }
}

} // namespace lumbrine
