// Who is in control, told from the datagrams that arrived and from nothing else: a second, plain statement of the rule
// that the receiver lives by.
#pragma once

#include "tests/simulation/recording_sockets.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace lumbrine::simulation {

// What comes from the receiver's own address, or is of a type that only a receiver sends.
bool isOfReceiver(const ReceivedDatagram& datagram);

class OwnerOracle {
public:
    // The next datagram; true when its sender is in control, so that it counts. What only a receiver sends never does.
    bool accept(const ReceivedDatagram& datagram);

    const std::optional<std::string>& owner() const { return ownerKey; }

    // The device in control has not been so before.
    bool isNewcomer() const { return newcomer; }

    // Of the ownership: every change of the device in control makes it one more, and another address of the same device
    // does not.
    int number() const { return ownerNumber; }

private:
    struct Peer {
        TimePoint lastSeen = distantPast;
        std::uint64_t token = 0;
    };

    std::map<std::string, Peer> peers;
    std::optional<std::string> ownerKey;
    int ownerNumber = 0;
    bool newcomer = false;
    std::set<std::string> keysInControl; // so far, like the next
    std::set<std::uint64_t> tokensInControl;
};

// A change of control at a moment.
struct OwnerChange {
    TimePoint at;
    std::optional<std::string> from; // none when there was nobody, or nobody any more
    std::string to;
    int number = 0; // of the ownership from now on
    bool isNewcomers = false;
};

struct Acceptance {
    std::vector<ReceivedDatagram> accepted;
    std::vector<int> numbers; // of the ownership, for each accepted datagram
    std::vector<OwnerChange> changes;

    // When that ownership is over; the end of time while it is not.
    TimePoint endOf(int number) const;
};

Acceptance acceptedOf(const std::vector<ReceivedDatagram>& received);

} // namespace lumbrine::simulation
