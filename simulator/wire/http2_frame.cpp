#include "simulator/wire/http2_frame.h"

#include <utility>

namespace lumbrine::wire {

namespace {

constexpr std::size_t headerLength = 9;
constexpr std::uint32_t streamBits = 0x7FFF'FFFF;

std::uint32_t readBigEndian32(ByteView bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (const std::uint8_t byte : bytes.subspan(offset, 4))
        value = value << 8 | byte;
    return value;
}

} // namespace

void appendBigEndian32(Bytes& bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

void appendFrame(Bytes& bytes, const Frame& frame) {
    const auto length = static_cast<std::uint32_t>(frame.payload.size());
    appendBigEndian32(bytes, length << 8 | frame.type);
    bytes.push_back(frame.flags);
    appendBigEndian32(bytes, frame.stream & streamBits);
    append(bytes, frame.payload);
}

void FrameCutter::add(ByteView bytes) {
    buffer.erase(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(std::exchange(used, 0)));
    append(buffer, bytes);
}

std::optional<Frame> FrameCutter::next() {
    const ByteView left = ByteView(buffer).subspan(used);
    if (left.size() < headerLength) return std::nullopt;
    const std::size_t length = readBigEndian32(left, 0) >> 8;
    if (left.size() - headerLength < length) return std::nullopt;
    const ByteView payload = left.subspan(headerLength, length);
    used += headerLength + length;
    return Frame{left[3], left[4], readBigEndian32(left, 5) & streamBits, {payload.begin(), payload.end()}};
}

} // namespace lumbrine::wire
