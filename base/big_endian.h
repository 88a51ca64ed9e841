// Big-endian integers: the byte order of every multi-byte number in the client protocol.
#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace lumbrine {

// Precondition of the readers and writers: the whole number lies inside `bytes`.
inline std::uint16_t readBigEndian16(ByteView bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] << 8 | bytes[offset + 1]);
}

inline std::uint32_t readBigEndian32(ByteView bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(readBigEndian16(bytes, offset)) << 16 | readBigEndian16(bytes, offset + 2);
}

inline std::uint64_t readBigEndian64(ByteView bytes, std::size_t offset) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < 8; ++i)
        value = value << 8 | bytes[offset + i];
    return value;
}

inline void writeBigEndian32(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
}

inline void writeBigEndian64(std::span<std::uint8_t> bytes, std::size_t offset, std::uint64_t value) {
    writeBigEndian32(bytes, offset, static_cast<std::uint32_t>(value >> 32));
    writeBigEndian32(bytes, offset + 4, static_cast<std::uint32_t>(value));
}

inline void appendBigEndian16(Bytes& bytes, std::uint16_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    bytes.push_back(static_cast<std::uint8_t>(value));
}

} // namespace lumbrine
