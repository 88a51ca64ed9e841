// One TCP socket of the system's on 127.0.0.1, closed when it goes. Its calls never wait.
#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <limits>
#include <span>
#include <utility>

namespace lumbrine {

class StreamDescriptor {
public:
    StreamDescriptor() = default;
    ~StreamDescriptor();
    StreamDescriptor(StreamDescriptor&& other) noexcept : fd(std::exchange(other.fd, -1)) {}
    StreamDescriptor& operator=(StreamDescriptor&& other) noexcept;
    StreamDescriptor(const StreamDescriptor&) = delete;
    StreamDescriptor& operator=(const StreamDescriptor&) = delete;

    // Not open when the port is taken; port 0 takes one that is free.
    static StreamDescriptor listening(std::uint16_t port);

    // Not open when nobody listens there.
    static StreamDescriptor connected(std::uint16_t port);

    // Of a listening socket; not open when nobody is waiting.
    StreamDescriptor accept() const;

    bool isOpen() const { return fd >= 0; }
    int number() const { return fd; }
    std::uint16_t localPort() const;

    // How many bytes were taken, 0 when there is no room, less when the peer has gone.
    int send(ByteView bytes) const;

    // How many bytes were stored; 0 or another number below it when the peer has gone.
    static constexpr int nothingYet = std::numeric_limits<int>::min();
    int receive(std::span<std::uint8_t> buffer) const;

    // Its end will be a reset for the peer, whatever it has not received.
    void breakOnClose() const;

private:
    explicit StreamDescriptor(int number);

    int fd = -1;
};

} // namespace lumbrine
