// The ancillary data of a datagram that names the address of this computer which it was sent to, or is to leave from
// (RFC 3542, section 6).
#pragma once

#include "platform/api/datagram_sockets.h"

#include <array>
#include <cstddef>
#include <optional>

struct msghdr;

namespace lumbrine {

using OwnAddress = decltype(PeerAddress::spokenTo); // the 16 bytes of an in6_addr, IPv4 in mapped form; zeros behind

// Makes the system write the address beside each datagram that the socket receives. Returns a negative errno value
// where it cannot.
int setReportsOwnAddress(int fd);

class PacketInfo {
public:
    // Gives `message` room for the address. The object has to outlive the call of recvmsg.
    void receiveWith(msghdr& message);

    // After recvmsg: the address that the datagram was sent to. All zero when the system did not tell.
    static OwnAddress sentTo(msghdr& message);

    // Makes `message` leave from this address. The object has to outlive the call of sendmsg.
    void sendWith(msghdr& message, const OwnAddress& from);

private:
    alignas(std::max_align_t) std::array<std::byte, 64> room{};
};

} // namespace lumbrine
