// For tests: a started server. The test hands it datagrams and advances the time.
#pragma once

#include "client_link/testing/recording_sockets.h"
#include "client_link/udp_server.h"
#include "platform/virtual/still_runtime.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lumbrine {

class ServedPeers {
public:
    using Delivered = std::pair<std::string, Bytes>; // key, datagram

    ServedPeers() {
        server.onDatagram = [this](ByteView bytes, const Sender& sender) {
            delivered.emplace_back(std::string(sender.key), Bytes(bytes.begin(), bytes.end()));
            lastOwnership = sender.ownership;
            lastArrival = sender.arrived;
        };
        started = server.start().has_value();
    }

    // The peer's datagram arrives.
    void from(std::string_view peer, const Bytes& bytes) { server.handleDatagram(bytes, peerAt(peer)); }

    void pass(double time) { runtime.time += seconds(time); }

    // What was delivered or sent since the last call.
    std::vector<Delivered> takeDelivered() { return std::exchange(delivered, {}); }
    std::vector<RecordingSockets::Sent> takeSent() { return std::exchange(sockets.sent, {}); }

    StillRuntime runtime;
    RecordingSockets sockets;
    UDPServer server{runtime, sockets, 52700};
    bool started = false;

    // Of the last datagram that was delivered.
    std::optional<Ownership> lastOwnership;
    TimePoint lastArrival = distantPast;

private:
    std::vector<Delivered> delivered;
};

} // namespace lumbrine
