#include "tests/simulation/forger.h"

#include "tests/simulation/phone.h"

#include <array>

namespace lumbrine::simulation {

Forger::Forger(VirtualRuntime& rt, VirtualNetwork& network, std::uint64_t seed)
    : runtime(rt), sockets(network.host("192.168.1.66")), chance(seed * 17 + 5), fd(sockets.open()) {
    sockets.bind(fd, 0);
    sockets.resolve(receiverAddress, receiverPort, receiver);
}

Forger::~Forger() {
    sockets.close(fd);
}

void Forger::act() {
    if (resting) return;
    constexpr std::array<std::uint8_t, 22> opcodes{0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A,
                                                   0x0B, 0x0C, 0x0D, 0x0F, 0x15, 0x20, 0x23, 0x24, 0x26, 0x7D, 0xFF};
    Bytes datagram;
    const std::uint64_t length = chance.below(12);
    for (std::uint64_t i = 0; i < length; ++i)
        datagram.push_back(static_cast<std::uint8_t>(chance.below(256)));
    if (datagram.size() > 1) {
        datagram[0] = chance.oneIn(4) ? 0x02 : 0x01;
        datagram[1] = opcodes[static_cast<std::size_t>(chance.below(opcodes.size()))];
        if (chance.oneIn(200)) datagram[1] = 0x25;
    }
    if (datagram.size() > 2) datagram[2] = static_cast<std::uint8_t>(chance.below(20));
    if (datagram.size() > 3 && datagram[1] >= 0x20 && datagram[1] <= 0x23)
        datagram[3] = static_cast<std::uint8_t>(chance.below(3)); // members that the datagram may hold
    if (datagram.size() > 4 && datagram[1] == 0x24)
        datagram[4] = static_cast<std::uint8_t>(chance.below(Phone::mostRangeTracks + 1));
    sockets.send(fd, datagram, receiver);
    runtime.postMainAfter(seconds(0.001) * static_cast<int>(20 + chance.below(200)), [this] { act(); });
}

} // namespace lumbrine::simulation
