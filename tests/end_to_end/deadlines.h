// The limits in tests that judge a duration. All other tests wait as long as interop::waitUntil.
#pragma once

#include <chrono>

namespace lumbrine::end_to_end {

#if defined(LUMBRINE_SANITIZED)
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif

// The longest time from SIGINT or SIGTERM to the end of a program.
inline constexpr std::chrono::milliseconds ending{sanitized ? 3000 : 1000};

// A whole tour of the demo.
inline constexpr std::chrono::seconds tour{sanitized ? 60 : 30};

// The most KiB by which a receiver's memory may grow in a flood. Sanitizers keep freed memory for a while.
inline constexpr long memoryGrowth = (sanitized ? 1024L : 24L) * 1024;

} // namespace lumbrine::end_to_end
