// Makes the packets of one port out of the messages that leave by it at one moment.
#pragma once

#include "base/bytes.h"
#include "simulator/packet_options.h"
#include "simulator/seeded_random.h"

#include <cstdint>
#include <vector>

namespace lumbrine {

class PacketMaker {
public:
    // The seed decides where realtime bytes are.
    PacketMaker(const PacketOptions& chosen, std::uint64_t seed) : options(chosen), chance(seed) {}

    // Keeps the order but for pings. A SysEx has a packet of its own.
    std::vector<Bytes> packetsOf(std::vector<Bytes> messages);

    // How a SysEx ends that is under way when the port goes.
    static Bytes cutSysEx();

private:
    std::vector<Bytes> disturbed(std::vector<Bytes> messages);

    const PacketOptions options;
    SeededRandom chance;
};

} // namespace lumbrine
