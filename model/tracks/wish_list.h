// What clients want of tracks by way of Pro Tools' scripting service, and what of it still waits. A value: no time but
// what it is told, no threads.
#pragma once

#include "client_link/ownership.h"
#include "model/state/session.h"
#include "platform/api/time.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <vector>

namespace lumbrine {

enum class TrackSwitch { mute, solo, inputMonitor };

struct Wish {
    TrackSwitch which = TrackSwitch::mute;
    bool enabled = false;
    Ownership owner = {};
    TimePoint arrived = {};

    std::vector<TrackIdentity> open = {}; // the tracks that were not reached yet
    std::size_t asked = 0;                // how many it is for, those that nobody can reach included
    std::size_t reached = 0;
    std::size_t refused = 0;

    std::uint64_t number = 0;          // given by the list
    bool inHand = false;               // the scripting queue is at work on it
    bool inDoubt = false;              // it may have been carried out: the track list decides
    TimePoint notBefore = distantPast; // of the next attempt
};

class WishList {
public:
    static constexpr std::size_t mostWaiting = 32;
    static constexpr Duration lifetime = seconds(3); // from the datagram

    // The newest wish wins: every older one of the same kind loses the tracks that both are for, and is over when it
    // has no other. Returns the oldest wish when more than 32 wait otherwise.
    std::optional<Wish> add(Wish wish);

    // The oldest wish that may be attempted now; null when there is none. Valid until it is removed.
    Wish* next(TimePoint now);

    // Null when the wish is over.
    Wish* find(std::uint64_t number);

    void remove(std::uint64_t number);

    // Removes and returns the wishes for which that holds and which nobody is at work on, oldest first.
    std::vector<Wish> take(const std::function<bool(const Wish&)>& isIt);

    static bool isExpired(const Wish& wish, TimePoint now) { return now - wish.arrived >= lifetime; }

    // When the next wish that nobody is at work on expires, and when the next one may be attempted.
    std::optional<TimePoint> nextExpiry() const;
    std::optional<TimePoint> nextAttempt() const;

private:
    void giveWayTo(const Wish& newer);

    std::list<Wish> wishes; // oldest first
    std::uint64_t lastNumber = 0;
};

} // namespace lumbrine
