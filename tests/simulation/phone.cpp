#include "tests/simulation/phone.h"

#include "remote/command_builder.h"

#include <array>
#include <cerrno>

namespace lumbrine::simulation {

namespace {

remote::RemoteOptions optionsOf(int number) {
    remote::RemoteOptions options;
    options.token = 100 + static_cast<std::uint64_t>(number);
    return options;
}

} // namespace

Phone::Phone(VirtualRuntime& rt, VirtualNetwork& virtualNetwork, const Scenario& decided, int number)
    : runtime(rt), network(virtualNetwork), scenario(decided), address("192.168.1." + std::to_string(100 + number)),
      chance(decided.seed * 31 + static_cast<unsigned>(number)),
      remote(std::make_unique<remote::RemoteClient>(rt, virtualNetwork.host(address), optionsOf(number))) {
    remote->connect(receiverAddress, receiverPort);
}

void Phone::act() {
    if (resting) return;
    doSomething();
    runtime.postMainAfter(seconds(0.05) + seconds(0.001) * static_cast<int>(chance.below(500)), [this] { act(); });
}

void Phone::rest() {
    resting = true;
    network.fail(address, VirtualNetwork::Call::send, 0);
}

void Phone::doSomething() {
    const Strip strip = *Strip::of(static_cast<int>(chance.below(stripCount)));
    switch (chance.below(14)) {
    case 0:
    case 1:
    case 2:
    case 3:
        remote->touch(strip);
        gesture(strip, 1 + static_cast<int>(chance.below(20)));
        break;
    case 4:
    case 5:
    case 6:
        press(strip);
        break;
    case 7:
    case 8:
        remote->send(remote::vpotDeltaCommand(strip, static_cast<std::int8_t>(chance.below(256))));
        break;
    case 9:
        remote->send(remote::panModeToggleCommand());
        break;
    case 10:
        remote->send(remote::bankMoveCommand(static_cast<remote::Move>(chance.below(4))));
        break;
    case 11:
        if (scenario.panSeeks) remote->send(remote::panSeekCommand(strip, static_cast<std::uint8_t>(chance.below(13))));
        break;
    case 12:
        if (chance.oneIn(3)) remote->takeOver();
        break;
    default:
        if (chance.oneIn(4)) walkOut(seconds(0.5) * static_cast<int>(1 + chance.below(18)));
        break;
    }
}

void Phone::gesture(Strip strip, int movesLeft) {
    if (resting) return;
    remote->move(strip, FaderValue::ofRaw(static_cast<std::uint16_t>(chance.below(16384))));
    if (movesLeft > 1) {
        runtime.postMainAfter(seconds(0.02), [this, strip, movesLeft] { gesture(strip, movesLeft - 1); });
    } else if (!chance.oneIn(8)) {
        remote->release(strip);
    }
}

void Phone::press(Strip strip) {
    constexpr std::array presses{remote::mutePressCommand, remote::soloPressCommand, remote::recArmPressCommand,
                                 remote::selectPressCommand};
    remote->send(presses[static_cast<std::size_t>(chance.below(presses.size()))](strip));
}

void Phone::walkOut(Duration absence) {
    network.fail(address, VirtualNetwork::Call::send, ENETDOWN);
    runtime.postMainAfter(absence, [&net = network, from = address] { net.fail(from, VirtualNetwork::Call::send, 0); });
}

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
    // Anything but what makes the receiver move faders by itself.
    constexpr std::array<std::uint8_t, 16> opcodes{0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07,
                                                   0x0A, 0x0C, 0x0D, 0x0F, 0x15, 0x26, 0x7D, 0xFF};
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
    sockets.send(fd, datagram, receiver);
    runtime.postMainAfter(seconds(0.001) * static_cast<int>(5 + chance.below(100)), [this] { act(); });
}

} // namespace lumbrine::simulation
