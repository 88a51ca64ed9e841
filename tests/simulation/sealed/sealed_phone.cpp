#include "tests/simulation/sealed/sealed_phone.h"

#include "remote/command_builder.h"
#include "tests/simulation/phone.h"

#include <cerrno>

namespace lumbrine::simulation {

SealedPhone::SealedPhone(VirtualRuntime& rt, VirtualNetwork& virtualNetwork, const SealedScenario& decided,
                         int phoneNumber, int& lastValue)
    : runtime(rt), network(virtualNetwork), scenario(decided), number(phoneNumber),
      address(std::make_shared<std::string>("192.168.1." + std::to_string(100 + phoneNumber))), value(lastValue),
      chance(decided.seed * 37 + static_cast<unsigned>(phoneNumber)),
      secrets(decided.seed * 41 + static_cast<unsigned>(phoneNumber)) {
    start();
}

void SealedPhone::start() {
    remote::RemoteOptions options;
    options.token = 100 + static_cast<std::uint64_t>(number);
    if (scenario.phonesSeal) {
        options.key = studiosKey;
        options.secrets = &secrets;
    }
    remote.reset();
    remote = std::make_unique<remote::RemoteClient>(runtime, network.host(*address), options);
    remote->connect(receiverAddress, receiverPort);
}

void SealedPhone::act() {
    if (resting) return;
    const Strip strip = anyStrip();
    switch (chance.below(12)) {
    case 0:
        if (chance.oneIn(4)) remote->takeOver();
        break;
    case 1:
        if (chance.oneIn(4)) walkOut(seconds(0.5) * static_cast<int>(1 + chance.below(18)));
        break;
    case 2:
        if (scenario.phonesMove && chance.oneIn(3)) roam();
        break;
    case 3:
        if (scenario.phonesRestart && chance.oneIn(4)) start();
        break;
    case 4:
    case 5:
    case 6:
    case 7:
        touch(strip);
        gesture(strip, 1 + static_cast<int>(chance.below(20)));
        break;
    default:
        press(strip);
    }
    runtime.postMainAfter(seconds(0.05) + seconds(0.001) * static_cast<int>(chance.below(500)), [this] { act(); });
}

void SealedPhone::rest() {
    resting = true;
    network.fail(*address, VirtualNetwork::Call::send, 0);
    for (int i = 0; i < stripCount; ++i)
        release(*Strip::of(i));
}

int SealedPhone::move(Strip strip) {
    remote->move(strip, FaderValue::ofRaw(static_cast<std::uint16_t>(++value)));
    return value;
}

void SealedPhone::gesture(Strip strip, int movesLeft) {
    if (resting) return;
    move(strip);
    if (movesLeft > 1) {
        runtime.postMainAfter(seconds(0.02), [this, strip, movesLeft] { gesture(strip, movesLeft - 1); });
    } else if (!chance.oneIn(8)) {
        release(strip);
    }
}

void SealedPhone::press(Strip strip) {
    switch (chance.below(3)) {
    case 0:
        return remote->send(remote::mutePressCommand(strip));
    case 1:
        return remote->send(remote::soloPressCommand(strip));
    default:
        return remote->send(remote::selectPressCommand(strip));
    }
}

void SealedPhone::walkOut(Duration absence) {
    network.fail(*address, VirtualNetwork::Call::send, ENETDOWN);
    runtime.postMainAfter(absence, [&net = network, own = address] { net.fail(*own, VirtualNetwork::Call::send, 0); });
}

void SealedPhone::roam() {
    const std::string next = "10.0." + std::to_string(number) + "." + std::to_string(++moves);
    network.move(*address, next);
    *address = next;
}

} // namespace lumbrine::simulation
