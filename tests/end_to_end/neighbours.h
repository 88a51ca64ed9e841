// For tests: datagrams with forged senders, and a local network with no other computer on it.
#pragma once

#include "base/bytes.h"

#include <cstdint>

namespace lumbrine::end_to_end {

// An IPv4 address in the order of the host, and a port.
struct UDPPlace {
    std::uint32_t host;
    std::uint16_t port;
};

constexpr UDPPlace onThisComputer(std::uint16_t port) {
    return {0x7F000001, port};
}

// Only as root.
class ForgedDatagrams {
public:
    // Throws std::runtime_error when the system does not allow it.
    ForgedDatagrams();
    ~ForgedDatagrams();
    ForgedDatagrams(const ForgedDatagrams&) = delete;
    ForgedDatagrams& operator=(const ForgedDatagrams&) = delete;

    void send(UDPPlace from, UDPPlace to, ByteView datagram);

private:
    const int fd;
};

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
    ForgedDatagrams datagrams;
};

} // namespace lumbrine::end_to_end
