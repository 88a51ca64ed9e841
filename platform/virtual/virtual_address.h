// Addresses of the virtual network. A PeerAddress holds the port and the text of the host.
#pragma once

#include "platform/api/datagram_sockets.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lumbrine {

struct VirtualAddress {
    std::string host; // in dual-stack form
    std::uint16_t port = 0;
};

// The form in which a dual-stack socket reports a numeric host: IPv4 as "::ffff:192.168.1.7", IPv6 unchanged. Absent
// when the host is not numeric.
std::optional<std::string> dualStackForm(const std::string& host);

// True for "127.0.0.1" (in dual-stack form) and "::1".
bool isLoopback(const std::string& host);

PeerAddress pack(const VirtualAddress& address);
std::optional<VirtualAddress> unpack(const PeerAddress& address);

// The host that PeerAddress::spokenTo names, in dual-stack form; empty when it names none.
void setSpokenTo(PeerAddress& peer, const std::string& host);
std::string spokenTo(const PeerAddress& peer);

} // namespace lumbrine
