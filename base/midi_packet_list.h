// MIDI packet lists in the memory layout of CoreMIDI, which is how bytes cross the MIDI seam on every system.
//
// A list is a 32-bit count, then that many packets. A packet is a 64-bit time stamp, a 16-bit length and that many
// bytes of data; the next packet begins at the end of the data rounded up to a multiple of 4, counted from the start of
// the list. Numbers are in the machine's own byte order.
#pragma once

#include "base/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace lumbrine {

// One list built on the stack, up to 512 bytes. Bytes after the last packet are zero.
class MIDIPacketList {
public:
    static constexpr std::size_t capacity = 512;
    static constexpr std::size_t headerSize = 4;
    static constexpr std::size_t packetHeaderSize = 10;

    // An empty list.
    MIDIPacketList() = default;

    // Adds one packet with time stamp 0 ("now"). False, and the list unchanged, when it does not fit in what is left.
    bool add(ByteView data);

    // The list as it goes through the seam: always 512 bytes; valid while this object lives.
    ByteView bytes() const { return buffer; }

private:
    alignas(8) std::array<std::uint8_t, capacity> buffer{};
    std::size_t used = headerSize;
};

// Calls `body` with the data of each packet in order. A packet of length 0 is passed over; one of more than 256 bytes
// is cut to its first 256. A list that ends before its own count says so ends the walk: whole packets before that
// count. Allocates nothing.
void forEachPacket(ByteView list, const std::function<void(ByteView)>& body);

} // namespace lumbrine
