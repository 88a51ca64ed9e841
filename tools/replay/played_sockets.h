// A socket at which a recording's datagrams arrive.
#pragma once

#include "platform/api/datagram_sockets.h"
#include "tools/replay/tape.h"

#include <vector>

namespace lumbrine::blackbox {

class PlayedSockets final : public DatagramSockets {
public:
    // Both outlive it.
    PlayedSockets(const std::vector<Record>& records, TapeClock& itsClock);

    int open() override;
    int setReuseAddress(int) override { return 0; }
    int setDualStack(int) override { return 0; }
    int bind(int fd, std::uint16_t port) override;
    int localPort(int) override { return boundPort; }
    bool isOwnAddress(int fd, const PeerAddress& address) override;
    int receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) override;
    int send(int fd, ByteView bytes, const PeerAddress& to) override;
    void name(const PeerAddress& address, std::string& host, std::string& port) override;
    bool resolve(const std::string&, std::uint16_t, PeerAddress&) override { return false; }
    void shutDown(int fd) override;
    void close(int) override {}

    // Reads an address of these sockets.
    static NumericAddress addressOf(const PeerAddress& peer);

private:
    TapeClock& clock;
    Lane opened, bound, arrivals, sent;
    std::vector<PeerAddress> own; // senders that were the socket itself
    int boundPort = 0;
    bool isShutDown = false;
};

} // namespace lumbrine::blackbox
