// Who is in control, told from the datagrams that arrived and from nothing else: a second, plain statement of the rule
// that the receiver lives by.
#pragma once

#include "tests/simulation/recording_sockets.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine::simulation {

class OwnerOracle {
public:
    // The next datagram; true when its sender is in control, so that it counts.
    bool accept(const ReceivedDatagram& datagram);

    const std::optional<std::string>& owner() const { return ownerKey; }

private:
    struct Peer {
        TimePoint lastSeen = distantPast;
        std::uint64_t token = 0;
    };

    std::map<std::string, Peer> peers;
    std::optional<std::string> ownerKey;
};

// A change of control at a moment.
struct OwnerChange {
    TimePoint at;
    std::optional<std::string> from; // none when there was nobody, or nobody any more
    std::string to;
};

struct Acceptance {
    std::vector<ReceivedDatagram> accepted;
    std::vector<OwnerChange> changes;
};

Acceptance acceptedOf(const std::vector<ReceivedDatagram>& received);

} // namespace lumbrine::simulation
