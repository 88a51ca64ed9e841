// Implements repeating timers for main loops that can run a job at a given time.
#pragma once

#include "platform/api/runtime.h"

#include <functional>
#include <memory>

namespace lumbrine {

// Calls `tick` at every multiple of `interval` from now. Each tick is a job that `postAt` posts to the loop's thread.
// Missed ticks are skipped, not made up for. Whatever `postAt` refers to must outlive the jobs posted through it.
std::unique_ptr<RepeatingTimer> repeatWith(std::function<void(TimePoint due, Task job)> postAt, Duration interval,
                                           std::function<void()> tick);

} // namespace lumbrine
