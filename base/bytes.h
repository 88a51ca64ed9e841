// Bytes on their way in or out.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace lumbrine {

using Bytes = std::vector<std::uint8_t>;

// Bytes that somebody else owns; valid for the duration of the call that gets them, unless a function says otherwise.
using ByteView = std::span<const std::uint8_t>;

inline void append(Bytes& bytes, ByteView more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

} // namespace lumbrine
