// For tests: a local network with no other computer on it, and datagrams that seem to come from its other addresses.
#pragma once

#include "base/bytes.h"

#include <cstdint>

namespace lumbrine::end_to_end {

// Only in a private world (interop::inOwnWorld). Datagrams to a neighbour wait for an address resolution that never
// ends.
class Neighbours {
public:
    static constexpr int count = 240;

    // Throws std::runtime_error when the system cannot create such a network.
    Neighbours();
    ~Neighbours();
    Neighbours(const Neighbours&) = delete;
    Neighbours& operator=(const Neighbours&) = delete;

    // Sends from one neighbour, 0 to count - 1, to a port of this computer.
    void send(int neighbour, std::uint16_t port, ByteView datagram);

private:
    int fd = -1;
};

} // namespace lumbrine::end_to_end
