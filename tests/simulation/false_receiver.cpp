#include "tests/simulation/false_receiver.h"

#include "tests/simulation/phone.h"

#include <array>

namespace lumbrine::simulation {

FalseReceiver::FalseReceiver(VirtualRuntime& rt, VirtualNetwork& virtualNetwork)
    : network(virtualNetwork), sockets(virtualNetwork.host(falseReceiverAddress)), fd(sockets.open()) {
    sockets.bind(fd, receiverPort);
    sockets.resolve(receiverAddress, receiverPort, receiver);
    thread = rt.startThread("false receiver", [this] { answer(); });
}

FalseReceiver::~FalseReceiver() {
    sockets.shutDown(fd);
    thread.reset();
    sockets.close(fd);
}

void FalseReceiver::speak(SeededRandom& chance) {
    const std::array<Bytes, 4> words{Bytes{0x01, 0x7D},                                // busy
                                     Bytes{0x01, 0x7F},                                // pong
                                     Bytes{0x01, 0x15, 0x00},                          // pan side
                                     Bytes{0x01, 0x16, 0xFF, 0xFF, 0x00, 0x00, 0x08}}; // no bank position
    const Bytes& word = words[static_cast<std::size_t>(chance.below(words.size()))];
    if (chance.oneIn(4)) return network.forge(receiverAddress, receiverPort, receiverAddress, receiverPort, word);
    sockets.send(fd, word, receiver);
}

// A pong to a hello, to everything else that another client is in control.
void FalseReceiver::answer() {
    Bytes buffer(2048);
    PeerAddress from;
    for (;;) {
        const int length = sockets.receive(fd, buffer, from);
        if (length < 0) return;
        const bool isHello = length >= 2 && buffer[0] == 0x01 && buffer[1] == 0x00;
        sockets.send(fd, Bytes{0x01, static_cast<std::uint8_t>(isHello ? 0x7F : 0x7D)}, from);
    }
}

} // namespace lumbrine::simulation
