// A scripting service in virtual time that does what a test tells it, call by call.
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

// Listens from its making until it is destroyed.
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

    explicit ScriptedService(VirtualStreams& virtualStreams, std::uint16_t atPort = port);
    ~ScriptedService();
    ScriptedService(const ScriptedService&) = delete;
    ScriptedService& operator=(const ScriptedService&) = delete;

    // What it does when a connection is made, and when a request is complete.
    std::function<void(VirtualLine& line)> greet;
    std::function<void(Call& call)> answer;

    // All that came in, one entry for each connection.
    std::vector<Bytes> received;

    // The frames of a connection (from 1), after the preface; what is not whole is left out.
    std::vector<SentFrame> frames(std::size_t connection) const;

    // The frames of that type over all connections.
    std::vector<SentFrame> framesOfType(std::uint8_t type) const;

    std::size_t callCount = 0;

private:
    class Peer;
    VirtualStreams& streams;
    const std::uint16_t listeningPort;
};

} // namespace lumbrine::service
