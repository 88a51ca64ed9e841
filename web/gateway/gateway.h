// The gateway between browsers and the receiver: an HTTP server for the page, and WebSockets of which each has a UDP
// socket of its own. One binary message is one datagram, both ways, unchanged. The gateway adds the seals that the
// receiver asks for, and takes them away.
#pragma once

#include "seal/pairing_key.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>

namespace lumbrine::web {

struct GatewaySettings {
    std::uint16_t port = 0; // TCP, on all addresses, IPv4 and IPv6; 0: any free port
    std::string receiverHost;
    std::uint16_t receiverPort = 0;
    std::string hostName;         // of this computer, without ".local"
    std::string certificateChain; // file name; empty: HTTP without TLS
    std::string privateKey;       // file name

    // The key at the moment. It is asked for at every new WebSocket and every second for those that are open: another
    // key closes them all.
    std::function<std::optional<PairingKey>()> key;

    // The receiver's key that seals what goes to it. It is asked for as often; absent: nothing is sealed.
    std::function<std::optional<PairingKey>()> sealKey;
};

struct StartProblem {
    enum class Of { port, receiver, certificate } of;
    std::string why;
};

// Serves until SIGINT or SIGTERM, and then returns within half a second. `started` is called once, with the TCP port.
// The calling thread does all the work.
std::expected<void, StartProblem> serve(const GatewaySettings& settings,
                                        const std::function<void(std::uint16_t port)>& started);

// Close codes of WebSockets.
namespace close_code {
inline constexpr std::uint16_t ending = 1001;   // of this program
inline constexpr std::uint16_t noText = 1003;   // a text message came
inline constexpr std::uint16_t otherKey = 1008; // the key was changed
inline constexpr std::uint16_t tooManySockets = 4001;
inline constexpr std::uint16_t tooFast = 4002; // MessagePace
inline constexpr std::uint16_t silent = 4003;  // nothing came for 15 s, not even a ping or pong
inline constexpr std::uint16_t tooSlow = 4004; // the Outbox is full
} // namespace close_code

} // namespace lumbrine::web
