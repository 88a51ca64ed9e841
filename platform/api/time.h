// Points in time and durations, in nanoseconds of the runtime's clock.
#pragma once

#include <chrono>
#include <cstdint>

namespace lumbrine {

using Duration = std::chrono::nanoseconds;

// The steady clock of the runtime seam. It has no `now`, because real and virtual time differ: ask the Runtime.
struct RuntimeClock {
    using duration = Duration;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<RuntimeClock>;
    static constexpr bool is_steady = true;
};

using TimePoint = RuntimeClock::time_point;

// "Never yet": 73 years before the clock began. That is longer ago than every time limit, and near enough that the
// difference to any other time does not overflow.
inline constexpr TimePoint distantPast{Duration{-(std::int64_t{1} << 61)}};

// Converts seconds to a Duration, rounded to the nearest nanosecond: seconds(0.06) is 60 ms.
constexpr Duration seconds(double value) {
    return Duration{static_cast<Duration::rep>(value * 1e9 + (value < 0 ? -0.5 : 0.5))};
}

// Converts a Duration to seconds.
constexpr double inSeconds(Duration duration) {
    return static_cast<double>(duration.count()) / 1e9;
}

} // namespace lumbrine
