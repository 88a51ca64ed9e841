// Owned bytes, and a view of bytes that somebody else owns.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace lumbrine {

using Bytes = std::vector<std::uint8_t>;

// As a parameter, valid during the call only, unless the function says otherwise.
using ByteView = std::span<const std::uint8_t>;

inline void append(Bytes& bytes, ByteView more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

} // namespace lumbrine
