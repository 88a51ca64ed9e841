// The level meters of all strips: written by the MIDI threads, falling by themselves.
#pragma once

#include "base/strip.h"
#include "platform/api/runtime.h"

#include <array>
#include <cstdint>

namespace lumbrine {

class Meters {
public:
    static constexpr int maxLevel = 12;
    static constexpr Duration hold = seconds(0.18); // how long a level stands without being shown again

    using Levels = std::array<std::uint8_t, std::size_t{stripCount} * 2>; // strip by strip, left then right

    explicit Meters(Runtime& runtime) : runtime(runtime), meterLock(runtime) {}

    // Levels above 12 count as 12; `side` is 0 (left) or 1. Any thread.
    void show(Strip strip, int side, int level);

    // Lowers by one every level that is past its hold, and returns them all. Any thread.
    Levels fall();

private:
    struct Meter {
        std::uint8_t level = 0;
        TimePoint shownAt = distantPast;
    };

    Runtime& runtime;
    Mutex meterLock;
    std::array<Meter, std::size_t{stripCount} * 2> meters LUMBRINE_GUARDED_BY(meterLock);
};

} // namespace lumbrine
