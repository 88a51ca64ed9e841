// Converts an event of a MIDI system to packet lists for a read block.
#pragma once

#include "platform/api/midi_services.h"

namespace lumbrine {

// Calls `read` with the event in one packet. An event that is longer than the 256 bytes of a packet is split, and
// `read` is called for each part in order.
void readInPackets(ByteView event, const MIDIReadBlock& read);

} // namespace lumbrine
