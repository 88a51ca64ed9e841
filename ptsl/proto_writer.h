// Protocol-buffer encoding, as far as a request needs it.
#pragma once

#include "base/bytes.h"

#include <cstdint>

namespace lumbrine {

// A tag is varint(field * 8 + wire type); a length-delimited field is its tag, varint(length) and the bytes.
struct ProtoWriter {
    // Base 128, least significant group first: 1 to 10 bytes.
    static Bytes varint(std::uint64_t value);
};

} // namespace lumbrine
