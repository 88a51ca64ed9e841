// Waiting for what another process or thread brings about: looks every few milliseconds, so a test is as quick as the
// machine.
#pragma once

#include <chrono>
#include <functional>

namespace lumbrine::interop {

// Long enough for a loaded machine with two processors; only a failing test waits this long.
inline constexpr std::chrono::milliseconds patience{20'000};

// True as soon as the condition holds; false when it still does not after `limit`. The condition runs on this thread.
bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = patience);

// True when the condition held at every look during `duration`.
bool holdsFor(std::chrono::milliseconds duration, const std::function<bool()>& condition);

} // namespace lumbrine::interop
