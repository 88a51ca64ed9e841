// For tests: the other end of the wire. It records what arrives and sends only what the test asks for.
#pragma once

#include "base/bytes.h"
#include "platform/api/datagram_sockets.h"
#include "platform/api/runtime.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace lumbrine::remote {

class ScriptedReceiver {
public:
    ScriptedReceiver(Runtime& runtime, DatagramSockets& sockets, std::uint16_t port)
        : sockets(sockets), fd(sockets.open()), mutex(runtime) {
        sockets.setDualStack(fd);
        sockets.bind(fd, port);
        thread = runtime.startThread("scripted receiver", [this] { receiveLoop(); });
    }

    ~ScriptedReceiver() {
        sockets.shutDown(fd);
        thread.reset();
        sockets.close(fd);
    }
    ScriptedReceiver(const ScriptedReceiver&) = delete;
    ScriptedReceiver& operator=(const ScriptedReceiver&) = delete;

    // The datagrams that have arrived since the last call, in order.
    std::vector<Bytes> taken() {
        const Lock lock(mutex);
        return std::exchange(arrived, {});
    }

    // Sends to the peer that sent the last datagram.
    void send(const Bytes& datagram) {
        std::optional<PeerAddress> to;
        {
            const Lock lock(mutex);
            to = peer;
        }
        if (to) sockets.send(fd, datagram, *to);
    }

private:
    void receiveLoop() {
        std::vector<std::uint8_t> buffer(2048);
        PeerAddress from;
        while (true) {
            const int size = sockets.receive(fd, buffer, from);
            if (size < 0) return;
            const Lock lock(mutex);
            peer = from;
            arrived.emplace_back(buffer.begin(), buffer.begin() + size);
        }
    }

    DatagramSockets& sockets;
    const int fd;
    Mutex mutex;
    std::vector<Bytes> arrived LUMBRINE_GUARDED_BY(mutex);
    std::optional<PeerAddress> peer LUMBRINE_GUARDED_BY(mutex);
    std::unique_ptr<Thread> thread;
};

} // namespace lumbrine::remote
