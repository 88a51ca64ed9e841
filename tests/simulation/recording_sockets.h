// The receiver's sockets with a record of every datagram that was received through them, with its sender and its time:
// what the receiver really got, which the checkers start from. What it sends is shown to an observer, and recorded but
// for the meters. A trace gets all of it.
#pragma once

#include "platform/api/datagram_sockets.h"
#include "platform/api/runtime.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace lumbrine::simulation {

struct Trace;

struct ReceivedDatagram {
    TimePoint at;
    std::string sender; // "host:port"
    Bytes bytes;
};

struct SentDatagram {
    TimePoint at;
    std::size_t peer = 0; // whose name is in SentDatagrams::peers
    Bytes bytes;

    std::uint8_t type() const { return bytes.size() > 1 ? bytes[1] : 0; }
};

struct SentDatagrams {
    std::vector<std::string> peers; // "host:port"
    std::vector<SentDatagram> list;
};

// One thread receives; the record is read when that thread has nothing more to receive.
class RecordingSockets final : public DatagramSockets {
public:
    // Meters that do not arrive are lost on the way.
    RecordingSockets(Runtime& rt, DatagramSockets& real, bool metersArrive, Trace* itsTrace)
        : runtime(rt), sockets(real), carriesMeters(metersArrive), trace(itsTrace) {}

    const std::vector<ReceivedDatagram>& received() const { return record; }
    SentDatagrams takeSent() { return std::move(outgoing); } // once

    // Called before each datagram goes out, on whichever thread sends it. Set before anybody sends.
    std::function<void(ByteView)> onSend;

    int open() override { return sockets.open(); }
    int setReuseAddress(int fd) override { return sockets.setReuseAddress(fd); }
    int setDualStack(int fd) override { return sockets.setDualStack(fd); }
    int bind(int fd, std::uint16_t port) override { return sockets.bind(fd, port); }
    int localPort(int fd) override { return sockets.localPort(fd); }
    bool isOwnAddress(int fd, const PeerAddress& address) override { return sockets.isOwnAddress(fd, address); }
    int receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) override;
    int send(int fd, ByteView bytes, const PeerAddress& to) override;
    void name(const PeerAddress& address, std::string& host, std::string& port) override {
        sockets.name(address, host, port);
    }
    bool resolve(const std::string& host, std::uint16_t port, PeerAddress& address) override {
        return sockets.resolve(host, port, address);
    }
    void shutDown(int fd) override { sockets.shutDown(fd); }
    void close(int fd) override { sockets.close(fd); }

private:
    void note(ByteView bytes, const PeerAddress& to);
    std::string nameOf(const PeerAddress& address);
    std::size_t peerAt(const PeerAddress& address);

    Runtime& runtime;
    DatagramSockets& sockets;
    const bool carriesMeters;
    Trace* const trace; // may be null
    std::vector<ReceivedDatagram> record;
    SentDatagrams outgoing;
    std::vector<PeerAddress> addresses; // of its peers
};

} // namespace lumbrine::simulation
