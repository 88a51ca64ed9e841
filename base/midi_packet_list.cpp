#include "base/midi_packet_list.h"

#include <algorithm>
#include <cstring>

namespace lumbrine {

namespace {

constexpr std::size_t maxPacketData = 256;

constexpr std::size_t roundUpTo4(std::size_t offset) {
    return (offset + 3) & ~std::size_t{3};
}

template <typename Number>
Number load(ByteView bytes, std::size_t offset) {
    Number value;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

} // namespace

bool MIDIPacketList::add(ByteView data) {
    const std::size_t start = roundUpTo4(used);
    if (start + packetHeaderSize + data.size() > capacity) return false;
    const auto length = static_cast<std::uint16_t>(data.size());
    std::memcpy(buffer.data() + start + 8, &length, sizeof length);
    std::ranges::copy(data, buffer.begin() + static_cast<std::ptrdiff_t>(start + packetHeaderSize));
    used = start + packetHeaderSize + data.size();

    const auto count = load<std::uint32_t>(buffer, 0) + 1;
    std::memcpy(buffer.data(), &count, sizeof count);
    return true;
}

void forEachPacket(ByteView list, const std::function<void(ByteView)>& body) {
    if (list.size() < MIDIPacketList::headerSize) return;
    const auto count = load<std::uint32_t>(list, 0);
    std::size_t offset = MIDIPacketList::headerSize;
    for (std::uint32_t i = 0; i < count; ++i) {
        if (offset + MIDIPacketList::packetHeaderSize > list.size()) return;
        const std::size_t length = load<std::uint16_t>(list, offset + 8);
        const std::size_t data = offset + MIDIPacketList::packetHeaderSize;
        if (data + length > list.size()) return;
        if (length > 0) body(list.subspan(data, std::min(length, maxPacketData)));
        offset = roundUpTo4(data + length);
    }
}

} // namespace lumbrine
