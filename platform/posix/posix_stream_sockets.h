// TCP sockets of the operating system. `receive` polls for half a millisecond before it blocks: a service on the same
// computer often answers within that time, and waking a blocked thread would take about as long again.
#pragma once

#include "platform/api/stream_socket.h"

#include <mutex>
#include <set>

namespace lumbrine {

class PosixStreamSockets : public StreamSockets {
public:
    int open() override;
    int connect(int fd, const std::string& host, std::uint16_t port, Duration limit) override;
    int setReceiveTimeout(int fd, Duration limit) override;
    int setSendTimeout(int fd, Duration limit) override;
    int setNoDelay(int fd) override;
    int setNoSignal(int fd) override;
    int send(int fd, ByteView bytes) override;
    int sendSoon(int fd, ByteView bytes) override;
    int receive(int fd, std::span<std::uint8_t> buffer) override;
    void close(int fd) override;
    void shutDown() override;

private:
    std::mutex lock;
    std::set<int> sockets; // all open ones, for shutDown
    bool ended = false;    // set by shutDown: nothing is opened or connected any more
};

} // namespace lumbrine
