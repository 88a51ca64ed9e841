// How long the programs may take where the time itself is what is judged. Everything else waits as long as
// interop::waitUntil does.
#pragma once

#include <chrono>

namespace lumbrine::end_to_end {

#if defined(LUMBRINE_SANITIZED)
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif

// From SIGINT or SIGTERM to the end of a program.
inline constexpr std::chrono::milliseconds ending{sanitized ? 3000 : 1000};

// A whole tour of the demo.
inline constexpr std::chrono::seconds tour{sanitized ? 60 : 30};

// By how many KiB a receiver's memory may grow under a flood. A sanitizer keeps freed memory for a while.
inline constexpr long memoryGrowth = (sanitized ? 1024L : 24L) * 1024;

} // namespace lumbrine::end_to_end
