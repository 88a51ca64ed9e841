// The time of day, as the user's clock shows it. It may be set while the program runs: durations come from a Runtime.
#pragma once

#include <chrono>
#include <cstdint>

namespace lumbrine {

// Nanoseconds since 1970 (UTC).
inline std::int64_t wallClock() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

} // namespace lumbrine
