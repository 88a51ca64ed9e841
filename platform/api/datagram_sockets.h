// UDP sockets. Each function stands for one system call.
#pragma once

#include "base/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace lumbrine {

// A socket address exactly as the system returned it. Opaque: two addresses are equal when their first `length` bytes
// are.
struct PeerAddress {
    alignas(8) std::array<std::uint8_t, 128> storage{};
    std::uint32_t length = 128; // never more

    // The address of this computer that the peer sent to, as the system returned it; all zero when it is not known. A
    // computer with several networks answers from it, since a peer may discard what comes from another address.
    std::array<std::uint8_t, 64> spokenTo{};
};

// A call that returns int returns a negative errno value when it fails.
class DatagramSockets {
public:
    virtual ~DatagramSockets() = default;

    // Opens an IPv6 datagram socket and returns its descriptor.
    virtual int open() = 0;

    virtual int setReuseAddress(int fd) = 0;
    virtual int setDualStack(int fd) = 0; // clears IPV6_V6ONLY, so that one socket serves IPv4 and IPv6 peers

    // Binds to all addresses of this computer. With port 0 the system chooses a free port.
    virtual int bind(int fd, std::uint16_t port) = 0;

    // Returns the port that the socket is bound to.
    virtual int localPort(int fd) = 0;

    // True when the address is the socket's own: its port at any address of this computer. Any thread.
    virtual bool isOwnAddress(int fd, const PeerAddress& address) = 0;

    // Waits for one datagram and returns the number of bytes stored: 0 for an empty datagram. A datagram that is longer
    // than the buffer is truncated. `from.spokenTo` tells where the sender sent it to. Any thread.
    virtual int receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) = 0;

    // Sends from the address `to.spokenTo`, or from one that the system chooses when that is not known or has gone.
    // Never waits, neither for the peer nor for the network: when the system's buffer is full, the datagram is dropped
    // and the call fails. Any thread.
    virtual int send(int fd, ByteView bytes, const PeerAddress& to) = 0;

    // Writes the numeric host and the numeric port of an address. Both are empty when the system cannot format it.
    virtual void name(const PeerAddress& address, std::string& host, std::string& port) = 0;

    // Looks up a numeric or named host and writes its address in the form that these sockets send to. Returns false
    // when the host has no address.
    virtual bool resolve(const std::string& host, std::uint16_t port, PeerAddress& address) = 0;

    // Makes a `receive` that waits, and every later one, return an error. The descriptor stays in use until `close`.
    virtual void shutDown(int fd) = 0;
    virtual void close(int fd) = 0;
};

} // namespace lumbrine
