// HTTP/2 framing (RFC 9113, section 4): frames to bytes, and bytes to frames. No I/O.
#pragma once

#include "base/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace lumbrine {

namespace http2 {

enum class FrameType : std::uint8_t {
    data = 0,
    headers = 1,
    priority = 2,
    rstStream = 3,
    settings = 4,
    pushPromise = 5,
    ping = 6,
    goaway = 7,
    windowUpdate = 8,
    continuation = 9
};

inline constexpr std::uint8_t endStream = 0x01; // of DATA and HEADERS
inline constexpr std::uint8_t ack = 0x01;       // of SETTINGS and PING
inline constexpr std::uint8_t endHeaders = 0x04;

inline constexpr std::string_view preface = "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n";

// What one response, and all responses that are under way, may hold before the peer has to wait.
inline constexpr std::uint32_t windowSize = 8'388'608;

struct Frame {
    FrameType type;
    std::uint8_t flags;
    std::uint32_t streamID;
    ByteView payload;

    bool has(std::uint8_t flag) const { return (flags & flag) != 0; }
};

} // namespace http2

// A number as 4 big-endian bytes, and 4 bytes as a number.
std::array<std::uint8_t, 4> be32(std::uint32_t value);
std::uint32_t be32(std::span<const std::uint8_t, 4> bytes);

// A whole frame. It is never split, whatever its size; of the length 24 bits are written.
Bytes writeFrame(http2::FrameType type, std::uint8_t flags, std::uint32_t streamID, ByteView payload);

// The stream of the next request, which makes `nextStreamID` the one after it. Ends the program when there is none
// left.
std::uint32_t takeStreamID(std::uint32_t& nextStreamID);

// Bytes that have come in and belong to no frame that was read. It takes memory for what has come, never for what a
// header announces, and asks for no more bytes while it holds a whole frame: at most one frame of 16 MiB and what came
// with its last piece.
class FrameReader {
public:
    void append(ByteView received);

    // The next frame if all of it is there. Its payload is valid until the next call of any other function.
    std::optional<http2::Frame> next();

    void clear();

    std::size_t size() const { return bytes.size() - consumed; } // not yet read
    std::size_t capacity() const { return bytes.capacity(); }    // memory taken

private:
    Bytes bytes;
    std::size_t consumed = 0;
};

} // namespace lumbrine
