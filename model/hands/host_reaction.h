// How long Pro Tools takes to show the effect of a bank or channel key, learned from the presses so far. Not
// synchronized.
#pragma once

#include "platform/api/time.h"

#include <optional>

namespace lumbrine {

class HostReaction {
public:
    static constexpr Duration longest = seconds(1.1); // a press that shows nothing for so long has had no effect
    static constexpr Duration shortest = seconds(0.27);
    static constexpr Duration margin = seconds(0.1);
    static constexpr int enough = 3; // presses that have shown their effect, or none

    void pressed(TimePoint at);
    void shown(TimePoint at);

    // The longest time lately; zero before anything was learned. A single short one counts little.
    Duration usual() const { return slowest; }

    // For how long a press that has shown nothing may still show something: `longest`, until it is known better.
    Duration patience() const;

private:
    TimePoint last = distantPast;  // press
    std::optional<TimePoint> open; // the first press that has shown nothing yet, unless others were on their way then
    Duration slowest{};
    int learned = 0;
};

} // namespace lumbrine
