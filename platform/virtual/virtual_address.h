// Addresses of the virtual network: a port and a host's text in the bytes of a PeerAddress.
#pragma once

#include "platform/api/datagram_sockets.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lumbrine {

struct VirtualAddress {
    std::string host; // as a dual-stack socket tells it
    std::uint16_t port = 0;
};

// The form in which a dual-stack socket tells a numeric host: IPv4 as "::ffff:192.168.1.7", IPv6 as it is. Absent for
// what is no number.
std::optional<std::string> dualStackForm(const std::string& host);

// True for "127.0.0.1" (in dual-stack form) and "::1".
bool isLoopback(const std::string& host);

PeerAddress pack(const VirtualAddress& address);
std::optional<VirtualAddress> unpack(const PeerAddress& address);

} // namespace lumbrine
