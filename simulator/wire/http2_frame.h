// Frames of HTTP/2 as the service's side of a connection reads and writes them (RFC 9113, section 4).
#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace lumbrine::wire {

enum class FrameType : std::uint8_t {
    data,
    headers,
    priority,
    rstStream,
    settings,
    pushPromise,
    ping,
    goAway,
    windowUpdate,
    continuation,
};

namespace flag {
inline constexpr std::uint8_t endStream = 0x01;
inline constexpr std::uint8_t ack = 0x01;
inline constexpr std::uint8_t endHeaders = 0x04;
inline constexpr std::uint8_t padded = 0x08;
inline constexpr std::uint8_t priority = 0x20;
} // namespace flag

enum class ErrorCode : std::uint32_t {
    noError = 0,
    protocolError = 1,
    internalError = 2,
    flowControlError = 3,
    streamClosed = 5,
    frameSizeError = 6,
    compressionError = 9,
};

enum class Setting : std::uint16_t { headerTableSize = 1, initialWindowSize = 4, maxFrameSize = 5 };

// What a client sends before its first frame.
inline constexpr std::string_view preface = "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n";

struct Frame {
    std::uint8_t type = 0; // a FrameType, or one that nobody knows
    std::uint8_t flags = 0;
    std::uint32_t stream = 0;
    Bytes payload;

    bool is(FrameType wanted) const { return type == static_cast<std::uint8_t>(wanted); }
    bool has(std::uint8_t wanted) const { return (flags & wanted) != 0; }

    bool operator==(const Frame&) const = default;
};

void appendBigEndian32(Bytes& bytes, std::uint32_t value);
std::uint32_t readBigEndian32(ByteView bytes, std::size_t offset); // they are there

void appendFrame(Bytes& bytes, const Frame& frame);
Frame makeFrame(FrameType type, std::uint8_t flags, std::uint32_t stream, Bytes payload = {});

// Cuts bytes, which may come in any pieces, into frames.
class FrameCutter {
public:
    explicit FrameCutter(std::size_t longest) : longestPayload(longest) {}

    void add(ByteView bytes);

    // Absent until the next one is whole, and for ever when it is too long.
    std::optional<Frame> next();

    // A frame is announced whose payload is longer than the longest.
    bool tooLong() const;

private:
    std::size_t payloadLength() const;

    const std::size_t longestPayload;
    Bytes buffer;
    std::size_t used = 0; // bytes at its beginning that were cut off already
};

} // namespace lumbrine::wire
