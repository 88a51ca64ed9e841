// For tests: the receiver's UDP port, played by the test.
#pragma once

#include "base/bytes.h"
#include "tests/interop/waiting.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace lumbrine::end_to_end {

class PlayedReceiver {
public:
    PlayedReceiver();
    ~PlayedReceiver();
    PlayedReceiver(const PlayedReceiver&) = delete;
    PlayedReceiver& operator=(const PlayedReceiver&) = delete;

    std::uint16_t port() const { return ownPort; }

    // The next datagram; absent when none arrives in time.
    std::optional<Bytes> receive(std::chrono::milliseconds limit = interop::patience);

    // Sends to where the newest datagram came from.
    void answer(ByteView datagram);
    std::uint16_t peerPort() const;

    // True when the system has said since the last call that nobody has the port of an answer any more.
    bool wasRefused();

    // Waits until the other end has taken all answers from its socket, so that none is lost, or has closed it.
    void waitUntilTaken() const;

    // While it is closed, the system refuses what is sent to the port.
    void close();
    void open();

private:
    std::uint16_t ownPort = 0;
    int fd = -1;
    std::uint16_t peer = 0;
};

} // namespace lumbrine::end_to_end
