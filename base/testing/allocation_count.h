// Counting allocations, for tests of paths that must make none. Linking it replaces the global operator new; not
// together with a sanitizer, which has one of its own.
#pragma once

namespace lumbrine {

// Made by the calling thread, ever.
int allocationCount();

} // namespace lumbrine
