// For tests of decoders: different ways to split a stream of bytes.
#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <vector>

namespace lumbrine {

// `stream` in two parts; the first one has `length` bytes.
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

// The stream as a whole, byte by byte, and in two parts for every place to split it, both ends included. Each part is a
// separate allocation, so that the address sanitizer finds a decoder that reads past its end.
inline std::vector<std::vector<Bytes>> segmentationsOf(const Bytes& stream) {
    std::vector<std::vector<Bytes>> all{{stream}, byteByByte(stream)};
    for (std::size_t length = 0; length <= stream.size(); ++length)
        all.push_back(cutAt(stream, length));
    return all;
}

} // namespace lumbrine
