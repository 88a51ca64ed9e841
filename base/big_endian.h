// Big-endian integers: the byte order of every multi-byte number in the client protocol.
#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>

namespace lumbrine {

// Precondition of both readers: the whole number lies inside `bytes`.
inline std::uint16_t readBigEndian16(ByteView bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] << 8 | bytes[offset + 1]);
}

inline std::uint64_t readBigEndian64(ByteView bytes, std::size_t offset) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < 8; ++i)
        value = value << 8 | bytes[offset + i];
    return value;
}

inline void appendBigEndian16(Bytes& bytes, std::uint16_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    bytes.push_back(static_cast<std::uint8_t>(value));
}

} // namespace lumbrine
