// The level meters of all strips: written by the MIDI threads, falling step by step.
#pragma once

#include "base/strip.h"
#include "platform/api/runtime.h"

#include <array>
#include <cstdint>

namespace lumbrine {

class Meters {
public:
    static constexpr int maxLevel = 12;
    static constexpr Duration hold = seconds(0.18);     // how long a level stands without being shown again
    static constexpr Duration step = seconds(1.0 / 60); // between two calls of `fall`

    // Without a level for this long, the meters are at rest. That is longer than a level takes to fall, so that zeros
    // are sent more than once: datagrams get lost.
    static constexpr Duration restAfter = seconds(1.0);

    using Levels = std::array<std::uint8_t, std::size_t{stripCount} * 2>; // strip by strip, left then right

    explicit Meters(Runtime& runtime) : runtime(runtime), meterLock(runtime) {}

    // Levels above 12 count as 12; `side` is 0 (left) or 1. True when this ends a rest. Any thread.
    bool show(Strip strip, int side, int level);

    // Lowers by one every level that is past its hold, and returns them all. What has not been called for meanwhile has
    // fallen all the same. Any thread.
    Levels fall();

    // Rest begins with the first call after its time. Any thread.
    bool atRest();

private:
    struct Meter {
        std::uint8_t level = 0;
        TimePoint shownAt = distantPast;
    };

    Runtime& runtime;
    Mutex meterLock;
    std::array<Meter, std::size_t{stripCount} * 2> meters LUMBRINE_GUARDED_BY(meterLock);
    TimePoint lastLevelAt LUMBRINE_GUARDED_BY(meterLock) = distantPast;
    bool resting LUMBRINE_GUARDED_BY(meterLock) = true;
};

} // namespace lumbrine
