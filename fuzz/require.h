// An assertion for fuzzers. Unlike assert it also checks in release builds (NDEBUG).
#pragma once

#include <cstdlib>

namespace lumbrine {

inline void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace lumbrine
