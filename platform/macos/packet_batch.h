// Converts packets from CoreMIDI to the layout of base/midi_packet_list.h.
//
// On Apple's processors CoreMIDI aligns each packet to 4 bytes; on Intel processors a packet follows the previous one
// directly. The seam uses the first layout on every system.
#pragma once

#include "base/midi_packet_list.h"
#include "platform/api/midi_services.h"

#include <cstddef>

namespace lumbrine {

// Collects the packets of one delivery and passes them on in as few lists as possible. Allocates nothing.
class PacketBatch {
public:
    // Receivers read no more of a packet.
    static constexpr std::size_t longestPacket = 256;

    explicit PacketBatch(const MIDIReadBlock& receiver) : read(receiver) {}

    // Adds a packet. An empty one is skipped; one that is longer than longestPacket is cut.
    void add(ByteView packet);

    // Passes on the packets that are not passed on yet, if there are any.
    void finish();

private:
    const MIDIReadBlock& read;
    MIDIPacketList list;
    bool empty = true;
};

} // namespace lumbrine
