// UDP sockets, at the level of the system's calls.
#pragma once

#include "base/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace lumbrine {

// A socket address exactly as the system returned it. Opaque; compare the first `length` bytes.
struct PeerAddress {
    alignas(8) std::array<std::uint8_t, 128> storage{};
    std::uint32_t length = 128;
};

// Every call that can fail returns a negative errno value when it does.
class DatagramSockets {
public:
    virtual ~DatagramSockets() = default;

    // An IPv6 datagram socket. Returns its descriptor.
    virtual int open() = 0;

    virtual int setReuseAddress(int fd) = 0;
    virtual int setDualStack(int fd) = 0; // clears IPV6_V6ONLY: one socket for IPv4 and IPv6 peers

    // To every address of this machine; port 0 takes a free one.
    virtual int bind(int fd, std::uint16_t port) = 0;

    // The port a socket is bound to.
    virtual int localPort(int fd) = 0;

    // Waits for one datagram; returns how many bytes were stored, 0 for an empty one. A longer datagram is cut to the
    // buffer. Any thread.
    virtual int receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) = 0;

    // Never waits for the peer. Any thread.
    virtual int send(int fd, ByteView bytes, const PeerAddress& to) = 0;

    // Numeric host and numeric port; empty texts when the address cannot be named.
    virtual void name(const PeerAddress& address, std::string& host, std::string& port) = 0;

    // The address behind a numeric or named host, for a socket of this kind; false when there is none.
    virtual bool resolve(const std::string& host, std::uint16_t port, PeerAddress& address) = 0;

    // Makes a waiting `receive`, and every later one, return an error. The descriptor stays taken until `close`.
    virtual void shutDown(int fd) = 0;
    virtual void close(int fd) = 0;
};

} // namespace lumbrine
