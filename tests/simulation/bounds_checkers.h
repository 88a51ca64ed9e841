// What has a bound, however much comes in.
#pragma once

#include "platform/api/time.h"
#include "tests/simulation/receiver_runtime.h"

#include <string>
#include <utility>
#include <vector>

namespace lumbrine::simulation {

// At most 16 threads, and 32 jobs that wait in each queue.
std::vector<std::string> checkBounds(const Load& load);

// A line of the log that says how something stands is not told again within a minute. Lines that tell of an event of
// their own, something that came on, went away, was done or dropped, are.
std::vector<std::string> checkRepeats(const std::vector<std::pair<TimePoint, std::string>>& lines);

} // namespace lumbrine::simulation
