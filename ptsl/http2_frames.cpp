#include "ptsl/http2_frames.h"

#include <cstdlib>

namespace lumbrine {

namespace {

constexpr std::size_t headerSize = 9;
constexpr std::size_t mostInAFrame = 16'384;
constexpr std::uint32_t streamMask = 0x7FFFFFFF;    // clears the reserved bit
constexpr std::uint32_t lastStreamID = 0xFFFFFFFD;  // adding 2 does not overflow yet
constexpr std::size_t keptCapacity = 64UL * 1024UL; // a larger buffer is freed when it is empty

} // namespace

std::array<std::uint8_t, 4> be32(std::uint32_t value) {
    return {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
            static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

std::uint32_t be32(std::span<const std::uint8_t, 4> bytes) {
    std::uint32_t value = 0;
    for (const std::uint8_t byte : bytes)
        value = value << 8 | byte;
    return value;
}

Bytes writeFrame(http2::FrameType type, std::uint8_t flags, std::uint32_t streamID, ByteView payload) {
    const auto length = be32(static_cast<std::uint32_t>(payload.size()));
    const auto stream = be32(streamID & streamMask);
    Bytes frame;
    frame.reserve(headerSize + payload.size());
    frame.insert(frame.end(), length.begin() + 1, length.end()); // three of the four bytes
    frame.push_back(static_cast<std::uint8_t>(type));
    frame.push_back(flags);
    frame.insert(frame.end(), stream.begin(), stream.end());
    frame.insert(frame.end(), payload.begin(), payload.end());
    return frame;
}

Bytes writeBody(std::uint32_t streamID, ByteView body) {
    Bytes frames;
    for (; body.size() > mostInAFrame; body = body.subspan(mostInAFrame))
        append(frames, writeFrame(http2::FrameType::data, 0, streamID, body.first(mostInAFrame)));
    append(frames, writeFrame(http2::FrameType::data, http2::endStream, streamID, body));
    return frames;
}

std::uint32_t takeStreamID(std::uint32_t& nextStreamID) {
    if (nextStreamID > lastStreamID) std::abort();
    const std::uint32_t taken = nextStreamID;
    nextStreamID += 2;
    return taken;
}

void FrameReader::append(ByteView received) {
    bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(consumed));
    consumed = 0;
    if (bytes.empty() && bytes.capacity() > keptCapacity) bytes = Bytes();
    bytes.insert(bytes.end(), received.begin(), received.end());
}

std::optional<http2::Frame> FrameReader::next() {
    const ByteView unread = ByteView(bytes).subspan(consumed);
    if (unread.size() < headerSize) return std::nullopt;
    const std::size_t length = static_cast<std::size_t>(unread[0]) << 16 | static_cast<std::size_t>(unread[1]) << 8 |
                               static_cast<std::size_t>(unread[2]);
    if (unread.size() - headerSize < length) return std::nullopt;
    consumed += headerSize + length;
    return http2::Frame{static_cast<http2::FrameType>(unread[3]), unread[4], be32(unread.subspan<5, 4>()) & streamMask,
                        unread.subspan(headerSize, length)};
}

void FrameReader::clear() {
    bytes = Bytes();
    consumed = 0;
}

} // namespace lumbrine
