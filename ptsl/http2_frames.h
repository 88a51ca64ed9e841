// HTTP/2 framing (RFC 9113, section 4): writes frames as bytes and reads bytes as frames. No I/O.
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

inline constexpr std::uint8_t endStream = 0x01; // flag of DATA and HEADERS
inline constexpr std::uint8_t ack = 0x01;       // flag of SETTINGS and PING
inline constexpr std::uint8_t endHeaders = 0x04;

inline constexpr std::string_view preface = "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n";

// The flow-control window of each stream and of the connection, in bytes. It is also the largest response that is
// accepted.
inline constexpr std::uint32_t windowSize = 8'388'608;

struct Frame {
    FrameType type;
    std::uint8_t flags;
    std::uint32_t streamID;
    ByteView payload;

    bool has(std::uint8_t flag) const { return (flags & flag) != 0; }
};

} // namespace http2

// Converts a number to 4 big-endian bytes and back.
std::array<std::uint8_t, 4> be32(std::uint32_t value);
std::uint32_t be32(std::span<const std::uint8_t, 4> bytes);

// Returns one frame as bytes. The payload is never split; only the low 24 bits of its length are written.
Bytes writeFrame(http2::FrameType type, std::uint8_t flags, std::uint32_t streamID, ByteView payload);

// Returns a request's body as DATA frames of at most 16,384 bytes, the last one with END_STREAM. Larger frames need the
// peer's leave, which begins with its settings and our acknowledgement of them (RFC 9113, section 4.2); this size is
// always allowed.
Bytes writeBody(std::uint32_t streamID, ByteView body);

// Returns the stream for the next request and advances `nextStreamID` to the one after it. Ends the program when the
// numbers are used up.
std::uint32_t takeStreamID(std::uint32_t& nextStreamID);

// Collects received bytes and returns the frames in them. It allocates memory for bytes that have arrived, never for a
// length that a header announces. A caller that reads all frames before it appends more holds at most one frame (16
// MiB) and the bytes that arrived with its end.
class FrameReader {
public:
    void append(ByteView received);

    // Returns the next frame if it is complete. Its payload is valid until the next call of `append` or `clear`.
    std::optional<http2::Frame> next();

    void clear();

    std::size_t size() const { return bytes.size() - consumed; } // bytes not read yet
    std::size_t capacity() const { return bytes.capacity(); }    // bytes of memory

private:
    Bytes bytes;
    std::size_t consumed = 0;
};

} // namespace lumbrine
