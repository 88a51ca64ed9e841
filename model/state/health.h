// How the receiver's links to the outside stand, as far as it has seen by using them. What a diagnosis is made from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace lumbrine {

struct LinkHealth {
    enum class State {
        unknown, // not tried yet
        waiting, // tried, and nobody has answered yet
        up,
        down,
        off, // by the user's wish
    };

    State state = State::unknown;
    std::string detail = {}; // of `up`: the name it has; of `down`: the reason, in words. May be empty

    bool operator==(const LinkHealth&) const = default;
};

struct Health {
    std::uint16_t port = 0;  // the UDP port that was asked for
    LinkHealth udp;          // the socket for clients
    LinkHealth announcement; // on the local network
    LinkHealth midi;         // the ports of both surfaces
    LinkHealth scripting;    // Pro Tools' scripting service
    LinkHealth screen;       // reading Pro Tools' windows. down: the user has not allowed it; the detail says "stale"
                             // when the system refuses although it is allowed

    std::optional<bool> surfaceAIsTaken = {}; // another program is connected to both of its ports, like the next;
    std::optional<bool> surfaceBIsTaken = {}; // absent where the system does not tell

    std::optional<bool> fadersFollow = {}; // Pro Tools' did at a client's last move; absent before the first

    std::size_t strangers = 0; // hosts without a key that were not let in; counted up to UDPServer::maxStrangers

    // Datagrams of the client in control; absent when it does not seal.
    struct Loss {
        std::uint32_t received = 0;
        std::uint32_t lost = 0;

        bool operator==(const Loss&) const = default;
    };
    std::optional<Loss> loss = {};

    bool surfaceAWasHeard = false; // Pro Tools has pinged since the start, like the next
    bool surfaceBWasHeard = false;
    std::string lastClient = {}; // as in PublishedState::iosClientDesc; stays when the client goes

    bool operator==(const Health&) const = default;
};

} // namespace lumbrine
