// CoreMIDI's packet lists, as both kinds of processor lay them out.
#pragma once

#include "base/bytes.h"

#include <CoreMIDI/CoreMIDI.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace lumbrine {

// Calls `read` with the bytes of each packet, in order: of a longer packet the first 256, of an empty one nothing.
void forEachPacket(const ::MIDIPacketList* list, const std::function<void(ByteView)>& read);

// One message as a list of one packet, stamped with the host's time. Allocates nothing.
class MessageList {
public:
    explicit MessageList(ByteView message);
    MessageList(const MessageList&) = delete;
    MessageList& operator=(const MessageList&) = delete;

    // Null when the message does not fit a list of `size` bytes.
    const ::MIDIPacketList* get() const { return fits ? reinterpret_cast<const ::MIDIPacketList*>(&memory) : nullptr; }

private:
    static constexpr std::size_t size = 512;

    alignas(::MIDIPacketList) std::array<std::uint8_t, size> memory{};
    bool fits = false;
};

} // namespace lumbrine
