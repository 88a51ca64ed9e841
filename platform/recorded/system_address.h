// Reads the addresses of the system's own sockets.
#pragma once

#include "blackbox/format.h"
#include "platform/api/datagram_sockets.h"

namespace lumbrine {

// All zero for what is no address of an internet socket. Never waits and allocates nothing.
blackbox::NumericAddress systemAddress(const PeerAddress& peer);

} // namespace lumbrine
