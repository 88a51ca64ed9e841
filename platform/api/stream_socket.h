// TCP client sockets. Each function stands for one system call.
#pragma once

#include "base/bytes.h"
#include "platform/api/time.h"

#include <cstdint>
#include <span>
#include <string>

namespace lumbrine {

// A call that fails returns a negative errno value. One thread at a time may use a socket.
class StreamSockets {
public:
    virtual ~StreamSockets() = default;

    // Opens an IPv4 stream socket and returns its descriptor.
    virtual int open() = 0;

    // Connects to a numeric IPv4 address. Waits at most `limit`, then returns -ETIMEDOUT.
    virtual int connect(int fd, const std::string& host, std::uint16_t port, Duration limit) = 0;

    // The longest wait of one `receive` and of one `send`, which then return -EAGAIN. By default they wait without
    // limit.
    virtual int setReceiveTimeout(int fd, Duration limit) = 0;
    virtual int setSendTimeout(int fd, Duration limit) = 0;

    // Sends small pieces at once instead of collecting them (TCP_NODELAY).
    virtual int setNoDelay(int fd) = 0;

    // Makes `send` return an error when the peer is gone, where the system would otherwise raise SIGPIPE.
    virtual int setNoSignal(int fd) = 0;

    // Returns how many bytes the system accepted: at least one, perhaps fewer than given.
    virtual int send(int fd, ByteView bytes) = 0;

    // Like `send`, but the system may hold the bytes back for a fraction of a second, so that they leave together with
    // the next ones.
    virtual int sendSoon(int fd, ByteView bytes) { return send(fd, bytes); }

    // Waits for at least one byte and returns how many were stored; 0 when the peer has closed the connection.
    virtual int receive(int fd, std::span<std::uint8_t> buffer) = 0;

    virtual void close(int fd) = 0;

    // For the end of the program: every call that waits fails, and so does every later call except `close`. Any thread.
    virtual void shutDown() = 0;
};

} // namespace lumbrine
