#include "simulator/wire/http2_frame.h"

#include <utility>

namespace lumbrine::wire {

namespace {

constexpr std::size_t headerLength = 9;
constexpr std::uint32_t streamBits = 0x7FFF'FFFF;

} // namespace

void appendBigEndian32(Bytes& bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

std::uint32_t readBigEndian32(ByteView bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = offset; i < offset + 4; ++i)
        value = value << 8 | bytes[i];
    return value;
}

void appendFrame(Bytes& bytes, const Frame& frame) {
    const auto length = static_cast<std::uint32_t>(frame.payload.size());
    appendBigEndian32(bytes, length << 8 | frame.type);
    bytes.push_back(frame.flags);
    appendBigEndian32(bytes, frame.stream & streamBits);
    bytes.insert(bytes.end(), frame.payload.begin(), frame.payload.end());
}

Frame makeFrame(FrameType type, std::uint8_t flags, std::uint32_t stream, Bytes payload) {
    return {static_cast<std::uint8_t>(type), flags, stream, std::move(payload)};
}

void FrameCutter::add(ByteView bytes) {
    buffer.erase(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(std::exchange(used, 0)));
    buffer.insert(buffer.end(), bytes.begin(), bytes.end());
}

std::size_t FrameCutter::payloadLength() const {
    return readBigEndian32(buffer, used) >> 8;
}

bool FrameCutter::tooLong() const {
    return buffer.size() - used >= headerLength && payloadLength() > longestPayload;
}

std::optional<Frame> FrameCutter::next() {
    const std::size_t left = buffer.size() - used;
    if (left < headerLength || tooLong()) return std::nullopt;
    const std::size_t length = payloadLength();
    if (left - headerLength < length) return std::nullopt;
    const auto payload = buffer.begin() + static_cast<std::ptrdiff_t>(used + headerLength);
    Frame frame{buffer[used + 3], buffer[used + 4], readBigEndian32(buffer, used + 5) & streamBits,
                Bytes(payload, payload + static_cast<std::ptrdiff_t>(length))};
    used += headerLength + length;
    return frame;
}

} // namespace lumbrine::wire
