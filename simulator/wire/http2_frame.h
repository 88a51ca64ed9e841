// Frames of HTTP/2 as they pass by (RFC 9113, section 4). Types, flags and codes have libnghttp2's names.
#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace lumbrine::wire {

struct Frame {
    std::uint8_t type = 0;
    std::uint8_t flags = 0;
    std::uint32_t stream = 0;
    Bytes payload = {};

    bool has(std::uint8_t wanted) const { return (flags & wanted) != 0; }

    bool operator==(const Frame&) const = default;
};

void appendBigEndian32(Bytes& bytes, std::uint32_t value);

void appendFrame(Bytes& bytes, const Frame& frame);

// Cuts bytes, which may come in any pieces, into frames.
class FrameCutter {
public:
    void add(ByteView bytes);

    // Absent until the next one is whole.
    std::optional<Frame> next();

private:
    Bytes buffer;
    std::size_t used = 0; // bytes at its beginning that were cut off already
};

} // namespace lumbrine::wire
