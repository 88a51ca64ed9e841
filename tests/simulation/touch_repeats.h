// Which touches are of fingers that are down already, and since when a client is known to repeat touches: a second,
// plain statement of the rule that the receiver lives by. What a thread that stood still made late is uncertain.
#pragma once

#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace lumbrine::simulation {

class TouchRepeats {
public:
    TouchRepeats(const Acceptance& acceptance, const Pauses& pauses);

    // Whether the receiver may take that accepted datagram for a repeated touch, and whether it surely does.
    bool mayRepeat(std::size_t datagram) const { return may[datagram]; }
    bool surelyRepeats(std::size_t datagram) const { return surely[datagram]; }

    // How long this owner may be silent until its fingers are released: the shortest and the longest that it may be.
    Duration shortestSilence(int owner, TimePoint at) const { return silenceAfter(mayBeKnownFrom, owner, at); }
    Duration longestSilence(int owner, TimePoint at) const { return silenceAfter(knownFrom, owner, at); }

private:
    using Times = std::map<int, TimePoint>; // by owner

    static Duration silenceAfter(const Times& since, int owner, TimePoint at);

    std::vector<bool> may;
    std::vector<bool> surely;
    Times mayBeKnownFrom;
    Times knownFrom;
};

} // namespace lumbrine::simulation
