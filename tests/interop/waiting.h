// Waits for the effects of other processes and threads. The condition is checked every few milliseconds, so a test
// takes no longer than needed.
#pragma once

#include <chrono>
#include <functional>

namespace lumbrine::interop {

// Long enough for a loaded computer with two cores. Only a failing test waits this long.
inline constexpr std::chrono::milliseconds patience{20'000};

// Returns true as soon as the condition holds, and false when it does not hold within `limit`. The condition runs on
// this thread.
bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = patience);

// True when the condition held at every check during `duration`.
bool holdsFor(std::chrono::milliseconds duration, const std::function<bool()>& condition);

} // namespace lumbrine::interop
