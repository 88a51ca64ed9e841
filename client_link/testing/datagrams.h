// For tests: whole datagrams that several tests send or expect.
#pragma once

#include "base/bytes.h"

namespace lumbrine {

inline const Bytes touch{0x01, 0x02, 0x00};
inline const Bytes takeOver{0x01, 0x25};
inline const Bytes busy{0x01, 0x7D};
inline const Bytes news{0x01, 0x1D, 0x01, 0x00};

} // namespace lumbrine
