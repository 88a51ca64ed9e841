// Protocol-buffer encoding, only what requests need.
#pragma once

#include "base/bytes.h"

#include <cstdint>

namespace lumbrine {

// A field begins with its tag, varint(field number * 8 + wire type). A length-delimited field continues with
// varint(length) and the bytes.
struct ProtoWriter {
    // Returns the value in base 128, least significant group first: 1 to 10 bytes.
    static Bytes varint(std::uint64_t value);
};

} // namespace lumbrine
