// From an event of a MIDI system to packet lists for a read block.
#pragma once

#include "platform/api/midi_services.h"

namespace lumbrine {

// Calls `read` with the event in one packet, or with its parts one after another when it is longer than the 256 bytes
// of a packet.
void readInPackets(ByteView event, const MIDIReadBlock& read);

} // namespace lumbrine
