// The system's own TCP sockets. A receive watches for its bytes for half a millisecond before it sleeps: a service on
// this computer often answers within that, and waking a sleeper would take as long again.
#pragma once

#include "platform/api/stream_socket.h"

#include <mutex>
#include <set>

namespace lumbrine {

class PosixStreamSockets final : public StreamSockets {
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
    std::set<int> sockets; // that are open
    bool ended = false;
};

} // namespace lumbrine
