// HTTP/2 frames for code that inspects a connection (RFC 9113, section 4). Types, flags and codes have libnghttp2's
// names.
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

// Splits bytes into frames. The bytes may arrive in any pieces.
class FrameCutter {
public:
    void add(ByteView bytes);

    // The next frame; absent until it is complete.
    std::optional<Frame> next();

private:
    Bytes buffer;
    std::size_t used = 0; // bytes at the beginning that belong to returned frames
};

} // namespace lumbrine::wire
