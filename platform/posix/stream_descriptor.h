// Owns one non-blocking TCP socket on 127.0.0.1.
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

    // Listens on a port; with port 0 the system chooses a free one. Not open when the port is taken.
    static StreamDescriptor listening(std::uint16_t port);

    // Connects to a port. Not open when nothing listens there.
    static StreamDescriptor connected(std::uint16_t port);

    // Accepts one connection of a listening socket. Not open when no client is waiting.
    StreamDescriptor accept() const;

    bool isOpen() const { return fd >= 0; }
    int number() const { return fd; }
    std::uint16_t localPort() const;

    // Returns how many bytes were accepted: 0 when the buffer is full, a negative errno value when the peer is gone.
    int send(ByteView bytes) const;

    // Returns how many bytes were stored, `nothingYet` when none have arrived, 0 when the peer has closed the
    // connection, and a negative errno value when it broke.
    static constexpr int nothingYet = std::numeric_limits<int>::min();
    int receive(std::span<std::uint8_t> buffer) const;

    // Makes the destructor reset the connection: the peer loses the bytes that it has not received yet.
    void breakOnClose() const;

private:
    explicit StreamDescriptor(int number);

    int fd = -1;
};

} // namespace lumbrine
