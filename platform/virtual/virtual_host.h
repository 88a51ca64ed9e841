// One computer of the virtual network.
#pragma once

#include "base/deadline_heap.h"
#include "platform/virtual/virtual_address.h"
#include "platform/virtual/virtual_network.h"

#include <array>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {

class VirtualNetwork::Host final : public DatagramSockets {
public:
    Host(VirtualNetwork& network, std::string address);

    void fail(Call call, int error);
    void cutOff(bool isCutOff) { reachable = !isCutOff; }
    bool isReachable() const { return reachable; }
    void moveTo(std::string newAddress) { addresses.front() = std::move(newAddress); }
    void addAddress(std::string further) { addresses.push_back(std::move(further)); }
    bool hasAddress(const std::string& address) const;
    void loseWhatIsUnderWay();

    // Schedules the arrival of a datagram. It is lost when no socket has the port or the socket's queue is full.
    void arrive(TimePoint when, std::uint16_t port, const PeerAddress& from, ByteView bytes);

    int open() override;
    int setReuseAddress(int fd) override;
    int setDualStack(int fd) override;
    int bind(int fd, std::uint16_t port) override;
    int localPort(int fd) override;
    bool isOwnAddress(int fd, const PeerAddress& peer) override;
    int receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) override;
    int send(int fd, ByteView bytes, const PeerAddress& to) override;
    void name(const PeerAddress& peer, std::string& host, std::string& port) override;
    bool resolve(const std::string& host, std::uint16_t port, PeerAddress& peer) override;
    void shutDown(int fd) override;
    void close(int fd) override;

private:
    struct Datagram {
        PeerAddress from;
        Bytes bytes;
    };

    struct Socket {
        std::uint16_t port = 0; // 0 until it is bound
        bool ended = false;
        DeadlineHeap<TimePoint, Datagram> datagrams; // ordered by arrival time
        std::unique_ptr<VirtualRuntime::Signal> changed;
    };

    std::shared_ptr<Socket> socket(int fd) const;
    int injected(Call call) const { return -failures[static_cast<std::size_t>(call)]; }
    bool isTaken(std::uint16_t port) const;
    std::uint16_t freePort();

    VirtualNetwork& network;
    std::vector<std::string> addresses; // in dual-stack form; at least one
    bool reachable = true;
    std::map<int, std::shared_ptr<Socket>> sockets;
    std::array<int, 4> failures{};
    std::uint16_t nextPort = 49152;
};

} // namespace lumbrine
