// UDP sockets of the operating system.
#pragma once

#include "platform/api/datagram_sockets.h"

#include <atomic>
#include <mutex>
#include <set>
#include <span>

namespace lumbrine {

class PosixDatagramSockets : public DatagramSockets {
public:
    int open() override;
    int setReuseAddress(int fd) override;
    int setDualStack(int fd) override;
    int bind(int fd, std::uint16_t port) override;
    int localPort(int fd) override;
    bool isOwnAddress(int fd, const PeerAddress& address) override;
    int receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) override;
    int send(int fd, ByteView bytes, const PeerAddress& to) override;
    void name(const PeerAddress& address, std::string& host, std::string& port) override;
    bool resolve(const std::string& host, std::uint16_t port, PeerAddress& address) override;

    // Wakes a waiting `receive` by a datagram to the socket's own port. A socket that was never bound has no port, so a
    // `receive` on it keeps waiting.
    void shutDown(int fd) override;
    void close(int fd) override;

private:
    bool isShutDown(int fd) { return shutDownCount != 0 && isAmongShutDown(fd); }
    bool isAmongShutDown(int fd);

    std::atomic<int> shutDownCount{0}; // size of the set, so that `receive` takes no lock while the set is empty
    std::mutex lock;
    std::set<int> shutDownSockets; // guarded by `lock`
};

} // namespace lumbrine
