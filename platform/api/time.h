// Points in time and lengths of it, in nanoseconds of the runtime's own clock.
#pragma once

#include <chrono>
#include <cstdint>

namespace lumbrine {

using Duration = std::chrono::nanoseconds;

// The clock of the runtime seam: steady, and in tests as fast as the test wants it. It has no `now` of its own; ask the
// Runtime.
struct RuntimeClock {
    using duration = Duration;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<RuntimeClock>;
    static constexpr bool is_steady = true;
};

using TimePoint = RuntimeClock::time_point;

// "Never yet": about 73 years before the clock began, far enough for every limit and near enough that a difference to
// any other time does not overflow.
inline constexpr TimePoint distantPast{Duration{-(std::int64_t{1} << 61)}};

// A wait as it is usually told, rounded to the nearest nanosecond: seconds(0.06).
constexpr Duration seconds(double value) {
    return Duration{static_cast<Duration::rep>(value * 1e9 + (value < 0 ? -0.5 : 0.5))};
}

// A time or a length of time in seconds.
constexpr double inSeconds(Duration duration) {
    return static_cast<double>(duration.count()) / 1e9;
}

} // namespace lumbrine
