// Connections on which a recording's bytes arrive.
#pragma once

#include "platform/api/stream_socket.h"
#include "tools/replay/tape.h"

#include <array>
#include <map>
#include <vector>

namespace lumbrine::blackbox {

class PlayedStreams final : public StreamSockets {
public:
    // Both outlive it.
    PlayedStreams(const std::vector<Record>& records, TapeClock& itsClock);

    int open() override;
    int connect(int fd, const std::string& host, std::uint16_t port, Duration limit) override;
    int setReceiveTimeout(int, Duration) override { return 0; }
    int setSendTimeout(int, Duration) override { return 0; }
    int setNoDelay(int) override { return 0; }
    int setNoSignal(int) override { return 0; }
    int send(int fd, ByteView bytes) override;
    int receive(int fd, std::span<std::uint8_t> buffer) override;
    void close(int) override {}
    void shutDown() override { clock.end(); }

private:
    int failure(const Record* record);

    const std::vector<Record>& records;
    TapeClock& clock;
    Lane connections;
    std::map<int, Lane> arrivals; // by descriptor
    std::map<int, Lane> departures;
};

} // namespace lumbrine::blackbox
