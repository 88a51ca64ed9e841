#include "platform/linux/read_in_packets.h"

#include "base/midi_packet_list.h"

#include <algorithm>

namespace lumbrine {

void readInPackets(ByteView event, const MIDIReadBlock& read) {
    constexpr std::size_t maxPacketData = 256;
    while (!event.empty()) {
        const ByteView part = event.first(std::min(event.size(), maxPacketData));
        MIDIPacketList list;
        list.add(part);
        read(list.bytes());
        event = event.subspan(part.size());
    }
}

} // namespace lumbrine
