// Packs the messages that leave one port at the same moment into MIDI packets.
#pragma once

#include "base/bytes.h"
#include "simulator/packet_options.h"
#include "simulator/seeded_random.h"

#include <cstdint>
#include <vector>

namespace lumbrine {

class PacketMaker {
public:
    // The seed decides where realtime bytes are inserted.
    PacketMaker(const PacketOptions& options, std::uint64_t seed) : options(options), chance(seed) {}

    // Keeps the order, except that pings may move to the back. Each SysEx is in a separate packet.
    std::vector<Bytes> packetsOf(std::vector<Bytes> messages);

    // The beginning of a SysEx message, as it arrives when the port disappears before its end.
    static Bytes cutSysEx();

private:
    std::vector<Bytes> disturbed(std::vector<Bytes> messages);

    const PacketOptions options;
    SeededRandom chance;
};

} // namespace lumbrine
