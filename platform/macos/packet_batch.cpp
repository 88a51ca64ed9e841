#include "platform/macos/packet_batch.h"

#include <algorithm>

namespace lumbrine {

void PacketBatch::add(ByteView packet) {
    const ByteView data = packet.first(std::min(packet.size(), longestPacket));
    if (data.empty()) return;
    if (!list.add(data)) {
        finish();
        list.add(data);
    }
    empty = false;
}

void PacketBatch::finish() {
    if (empty) return;
    read(list.bytes());
    list = MIDIPacketList();
    empty = true;
}

} // namespace lumbrine
