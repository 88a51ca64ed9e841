// Repeating timers for a main loop that can run a job at a given time.
#pragma once

#include "platform/api/runtime.h"

#include <functional>
#include <memory>

namespace lumbrine {

// Calls `tick` at the multiples of `interval` from now on, as jobs that `postAt` hands to the loop's own thread. A tick
// that comes late does not bring the ones it delayed after it. What `postAt` refers to outlives the jobs it was given.
std::unique_ptr<RepeatingTimer> repeatWith(std::function<void(TimePoint due, Task job)> postAt, Duration interval,
                                           std::function<void()> tick);

} // namespace lumbrine
