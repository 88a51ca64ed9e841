#include "platform/macos/midi_packets.h"

#include <mach/mach_time.h>

#include <algorithm>
#include <cstring>

namespace lumbrine {

namespace {

constexpr std::size_t longestPacket = 256;

// Packets begin at multiples of 4 bytes on Apple's processors. On Intel's each follows the one before at any address,
// so their fields are copied instead of read in place.
ByteView dataOf(const ::MIDIPacket* packet) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(packet);
    std::uint16_t length = 0;
    std::memcpy(&length, bytes + offsetof(::MIDIPacket, length), sizeof length);
    return {bytes + offsetof(::MIDIPacket, data), length};
}

} // namespace

void forEachPacket(const ::MIDIPacketList* list, const std::function<void(ByteView)>& read) {
    const ::MIDIPacket* packet = &list->packet[0];
    for (std::uint32_t left = list->numPackets; left > 0; --left) {
        const ByteView data = dataOf(packet);
        if (!data.empty()) read(data.first(std::min(data.size(), longestPacket)));
        if (left > 1) packet = ::MIDIPacketNext(packet);
    }
}

MessageList::MessageList(ByteView message) {
    auto* const list = reinterpret_cast<::MIDIPacketList*>(memory.data());
    // A virtual source stamps its packets itself: to its readers 0 would not be now, but the distant past.
    const ::MIDITimeStamp now = ::mach_absolute_time();
    ::MIDIPacket* const first = ::MIDIPacketListInit(list);
    fits = ::MIDIPacketListAdd(list, size, first, now, message.size(), message.data()) != nullptr;
}

} // namespace lumbrine
