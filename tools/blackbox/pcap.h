// A recording for tools that read network traffic: the pcapng format.
#pragma once

#include "tools/blackbox/timed_records.h"

#include <cstdint>
#include <vector>

namespace lumbrine::blackbox {

// Two interfaces. The first, "network" (link type 101, raw IP), has the datagrams in made UDP and IP headers: recorded
// are only the peer's address and port, so the receiver's own address is 192.0.2.1 or 2001:db8::1, made for documents,
// and its port is `receiverPort`. The second, "midi" (link type 147, the first for private use), has MIDI packets: a
// byte for the surface, from 0, a byte for the direction, 0 from Pro Tools and 1 to it, and the bytes of the packet.
Bytes pcapOf(const std::vector<TimedRecord>& records, std::uint16_t receiverPort);

// The port of the newest socket that was bound; 52700 when the recording has none.
std::uint16_t receiverPortIn(const std::vector<TimedRecord>& records);

} // namespace lumbrine::blackbox
