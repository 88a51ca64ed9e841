// For tests of decoders: the ways in which a stream of bytes may arrive.
#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <vector>

namespace lumbrine {

// `stream` in two parts, the first of them `length` bytes long.
inline std::vector<Bytes> cutAt(const Bytes& stream, std::size_t length) {
    const auto middle = stream.begin() + static_cast<std::ptrdiff_t>(length);
    return {Bytes(stream.begin(), middle), Bytes(middle, stream.end())};
}

inline std::vector<Bytes> byteByByte(const Bytes& stream) {
    std::vector<Bytes> parts;
    parts.reserve(stream.size());
    for (const std::uint8_t byte : stream)
        parts.push_back({byte});
    return parts;
}

// Whole, byte by byte, and in two at each place, both ends included. Each part is a block of its own, so that the
// address sanitizer sees a decoder that reads past its end.
inline std::vector<std::vector<Bytes>> segmentationsOf(const Bytes& stream) {
    std::vector<std::vector<Bytes>> all{{stream}, byteByByte(stream)};
    for (std::size_t length = 0; length <= stream.size(); ++length)
        all.push_back(cutAt(stream, length));
    return all;
}

} // namespace lumbrine
