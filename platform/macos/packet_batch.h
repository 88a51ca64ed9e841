// Packets as CoreMIDI hands them over, brought into the layout of base/midi_packet_list.h.
//
// CoreMIDI begins each packet at a multiple of 4 bytes on Apple's processors and right behind the one before on
// Intel's. The seam knows the first layout only.
#pragma once

#include "base/midi_packet_list.h"
#include "platform/api/midi_services.h"

#include <cstddef>

namespace lumbrine {

// Gathers the packets of one delivery, and hands on as few lists as hold them. Allocates nothing.
class PacketBatch {
public:
    // No receiver reads more of a packet.
    static constexpr std::size_t longestPacket = 256;

    explicit PacketBatch(const MIDIReadBlock& receiver) : read(receiver) {}

    // A packet of length 0 is passed over, a longer one than the longest is cut.
    void add(ByteView packet);

    // Hands on what has been gathered since the last list was full; nothing when that is nothing.
    void finish();

private:
    const MIDIReadBlock& read;
    MIDIPacketList list;
    bool empty = true;
};

} // namespace lumbrine
