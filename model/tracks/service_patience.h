// How long the scripting service has been failing, and when it is asked for the track list again. A value. The tick
// that asks while all is well, every 1.2 s, is the unit of the pauses.
#pragma once

#include "platform/api/time.h"

#include <optional>

namespace lumbrine {

class ServicePatience {
public:
    // A service that has been failing for less than this is taken for one that will be back: what it said stays.
    static constexpr Duration grace = seconds(10);

    static constexpr Duration tick = seconds(1.2);
    static constexpr int longestPause = 25; // ticks: 30 s

    // The tick: whether to ask now. After each failure in a row the pause is twice as long.
    bool mayAsk();

    // Something happened in Pro Tools: whether to ask now, which is no sooner than a tick after the last failure.
    // Otherwise the next tick asks.
    bool mayAskAtOnce(TimePoint now);

    void answered();

    // A request that was made at `asked` has failed. A service that does not run answers at once, so it is asked with
    // every tick. True for the first failure in a row.
    bool failed(TimePoint asked, TimePoint now, bool isRunning);

    bool isFailing() const { return failingSince.has_value(); }
    bool isAway(TimePoint now) const { return failingSince && now - *failingSince >= grace; }

private:
    std::optional<TimePoint> failingSince; // when the first request was made that failed
    TimePoint lastFailure = distantPast;
    int pause = 1;     // ticks, after the next failure
    int ticksLeft = 0; // before the next request
};

} // namespace lumbrine
