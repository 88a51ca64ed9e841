// Counts what the program allocates, so that a benchmark can say that its hot path allocates nothing.
#pragma once

#include <cstdint>

namespace lumbrine {

// Calls of operator new by any thread since the program began.
std::uint64_t allocationCount();

} // namespace lumbrine
