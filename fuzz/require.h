// What a fuzzer expects of every input, in every build: NDEBUG takes no check away.
#pragma once

#include <cstdlib>

namespace lumbrine {

inline void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace lumbrine
