// UDP sockets of Linux.
#pragma once

#include "platform/posix/posix_datagram_sockets.h"

namespace lumbrine {

// On Linux two UDP sockets with SO_REUSEADDR share a port, and the newer one gets all datagrams: neither program would
// know. Other systems refuse the second socket. A closed UDP socket leaves nothing behind on its port, so nothing is
// lost by not setting the option.
class LinuxDatagramSockets final : public PosixDatagramSockets {
public:
    int setReuseAddress(int /*fd*/) override { return 0; }
};

} // namespace lumbrine
