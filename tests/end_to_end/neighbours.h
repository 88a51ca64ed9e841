// A local network on which nobody but this computer is there, and datagrams that seem to come from its other addresses.
#pragma once

#include "base/bytes.h"

#include <cstdint>

namespace lumbrine::end_to_end {

// In an own world only (interop::inOwnWorld). What is sent to one of the others waits for an answer that never comes.
class Neighbours {
public:
    static constexpr int count = 240;

    // Throws std::runtime_error where the system has no such network to give.
    Neighbours();
    ~Neighbours();
    Neighbours(const Neighbours&) = delete;
    Neighbours& operator=(const Neighbours&) = delete;

    // From one of them, 0 to count - 1, to a port of this computer.
    void send(int neighbour, std::uint16_t port, ByteView datagram);

private:
    int fd = -1;
};

} // namespace lumbrine::end_to_end
