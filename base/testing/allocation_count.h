// For tests of code that must not allocate: counts allocations. Linking it replaces the global operator new, so it does
// not work with sanitizers, which replace it too.
#pragma once

namespace lumbrine {

// The number of allocations of the calling thread since its start.
int allocationCount();

} // namespace lumbrine
