// The time in which threads of the receiver stood still or the machine slept: by so much, and no more, may it be late.
#pragma once

#include "platform/virtual/standstills.h"

#include <vector>

namespace lumbrine::simulation {

class Pauses {
public:
    Pauses() = default;
    explicit Pauses(const std::vector<Pause>& pauses); // in the order of their beginnings; they may overlap

    // How much of that time somebody stood still.
    Duration within(TimePoint from, TimePoint until) const;

    // Whether what begins and takes so long may end then: exactly after that time, where nobody stood still.
    bool mayTake(TimePoint begin, Duration length, TimePoint end) const {
        return end >= begin + length && end - begin - length <= within(begin, end);
    }

    // Whether what was due then may have happened at the other time.
    bool explain(TimePoint due, TimePoint happened) const { return mayTake(due, Duration::zero(), happened); }

    // Whether one thing may have happened so long after another. That may have been decided earlier than it happened.
    bool mayFollow(TimePoint first, Duration length, TimePoint second) const {
        return mayTake(first, length, second) || mayTake(earliest(first), length, second);
    }

    // So much time before, in which nobody stood still.
    TimePoint before(TimePoint at, Duration time) const;

    // The earliest time that what happened then may have been decided at.
    TimePoint earliest(TimePoint happened) const;

    // The latest time that what was due then may have happened at.
    TimePoint latest(TimePoint due) const;

private:
    std::vector<Pause> united; // they neither overlap nor touch
};

} // namespace lumbrine::simulation
