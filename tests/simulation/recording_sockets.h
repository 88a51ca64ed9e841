// The receiver's sockets with a record of every datagram that was received through them, with its sender and its time:
// what the receiver really got, which the checkers start from. What it sends is shown to an observer.
#pragma once

#include "platform/api/datagram_sockets.h"
#include "platform/api/runtime.h"

#include <functional>
#include <vector>

namespace lumbrine::simulation {

struct ReceivedDatagram {
    TimePoint at;
    std::string sender; // "host:port"
    Bytes bytes;
};

struct SentDatagram {
    TimePoint at;
    std::string receiver; // "host:port"
    std::uint8_t type = 0;
};

// One thread receives; the record is read when that thread has nothing more to receive.
class RecordingSockets final : public DatagramSockets {
public:
    // Meters that do not arrive are lost on the way.
    RecordingSockets(Runtime& rt, DatagramSockets& real, bool metersArrive, bool notesWhatIsSent)
        : runtime(rt), sockets(real), carriesMeters(metersArrive), notesSends(notesWhatIsSent) {}

    const std::vector<ReceivedDatagram>& received() const { return record; }

    // Empty unless it is noted.
    const std::vector<SentDatagram>& sent() const { return sends; }

    // Called before each datagram goes out, on whichever thread sends it. Set before anybody sends.
    std::function<void(ByteView)> onSend;

    int open() override { return sockets.open(); }
    int setReuseAddress(int fd) override { return sockets.setReuseAddress(fd); }
    int setDualStack(int fd) override { return sockets.setDualStack(fd); }
    int bind(int fd, std::uint16_t port) override { return sockets.bind(fd, port); }
    int localPort(int fd) override { return sockets.localPort(fd); }
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
    Runtime& runtime;
    DatagramSockets& sockets;
    std::string nameOf(const PeerAddress& address);

    const bool carriesMeters;
    const bool notesSends;
    std::vector<ReceivedDatagram> record;
    std::vector<SentDatagram> sends;
};

} // namespace lumbrine::simulation
