// TCP client sockets, at the level of the system's calls.
#pragma once

#include "base/bytes.h"
#include "platform/api/time.h"

#include <cstdint>
#include <span>
#include <string>

namespace lumbrine {

// Every call that can fail returns a negative errno value when it does. A socket is used by one thread at a time.
class StreamSockets {
public:
    virtual ~StreamSockets() = default;

    // An IPv4 stream socket. Returns its descriptor.
    virtual int open() = 0;

    // To a numeric IPv4 address. Waits at most `limit` (-ETIMEDOUT).
    virtual int connect(int fd, const std::string& host, std::uint16_t port, Duration limit) = 0;

    // How long one `receive`, one `send` waits at most before it returns -EAGAIN; for ever until they are set.
    virtual int setReceiveTimeout(int fd, Duration limit) = 0;
    virtual int setSendTimeout(int fd, Duration limit) = 0;

    // Small pieces leave at once.
    virtual int setNoDelay(int fd) = 0;

    // A peer that has gone is an error of `send`, never a signal.
    virtual int setNoSignal(int fd) = 0;

    // Returns how many of the bytes were taken, at least one.
    virtual int send(int fd, ByteView bytes) = 0;

    // The same without hurry: the bytes may be held back for a fraction of a second, to leave with what is sent next.
    virtual int sendSoon(int fd, ByteView bytes) { return send(fd, bytes); }

    // Waits for at least one byte and returns how many were stored; 0 when the peer has ended the connection.
    virtual int receive(int fd, std::span<std::uint8_t> buffer) = 0;

    virtual void close(int fd) = 0;

    // The program ends: makes every waiting call, and every later one but `close`, fail. Any thread.
    virtual void shutDown() = 0;
};

} // namespace lumbrine
