// For tests: a scripting service in virtual time whose answers the test decides, call by call.
#pragma once

#include "base/bytes.h"
#include "platform/virtual/virtual_streams.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace lumbrine::service {

struct SentFrame {
    std::uint8_t type;
    std::uint8_t flags;
    std::uint32_t stream;
    Bytes payload;

    bool operator==(const SentFrame&) const = default;
};

// Listens as long as it lives.
class ScriptedService {
public:
    static constexpr std::uint16_t port = 31416;

    struct Call {
        VirtualLine& line;
        std::uint32_t stream;
        Bytes message;          // without the prefix
        std::size_t number;     // from 1, over all connections
        std::size_t connection; // from 1
    };

    explicit ScriptedService(VirtualStreams& streams, std::uint16_t listeningPort = port);
    ~ScriptedService();
    ScriptedService(const ScriptedService&) = delete;
    ScriptedService& operator=(const ScriptedService&) = delete;

    // Called when a connection is accepted, and when a request is complete. Set by the test.
    std::function<void(VirtualLine& line)> greet;
    std::function<void(Call& call)> answer;

    // All received bytes, one entry for each connection.
    std::vector<Bytes> received;

    // The complete frames of a connection, after the preface. Connections are numbered from 1.
    std::vector<SentFrame> frames(std::size_t connection) const;

    // The frames of this type on all connections.
    std::vector<SentFrame> framesOfType(std::uint8_t type) const;

    std::size_t callCount = 0;

private:
    class Peer;
    VirtualStreams& streams;
    const std::uint16_t listeningPort;
};

} // namespace lumbrine::service
