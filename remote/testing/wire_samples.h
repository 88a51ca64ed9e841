// For tests: strips by their number, and the datagrams with which many conversations begin.
#pragma once

#include "base/bytes.h"
#include "base/strip.h"

namespace lumbrine::remote {

inline Strip strip(int index) {
    return *Strip::of(index);
}

inline const Bytes hello{0x01, 0x00};
inline const Bytes pong{0x01, 0x7F};
inline const Bytes busyAnswer{0x01, 0x7D};

} // namespace lumbrine::remote
