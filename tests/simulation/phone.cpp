#include "tests/simulation/phone.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <numeric>
#include <utility>
#include <vector>

namespace lumbrine::simulation {

namespace {

remote::RemoteOptions optionsOf(int number) {
    remote::RemoteOptions options;
    options.token = 100 + static_cast<std::uint64_t>(number);
    return options;
}

} // namespace

Phone::Phone(VirtualRuntime& rt, VirtualNetwork& virtualNetwork, const Scenario& decided, int phoneNumber)
    : runtime(rt), network(virtualNetwork), scenario(decided),
      ownAddress(std::make_shared<std::string>("192.168.1." + std::to_string(100 + phoneNumber))), number(phoneNumber),
      repeatsTouches(chanceOf(decided.seed, "repeats touches " + std::to_string(number)).oneIn(2)),
      chance(decided.seed * 31 + static_cast<unsigned>(number)),
      roaming(chanceOf(decided.seed, "phones-move " + std::to_string(number))),
      remote(std::make_unique<remote::RemoteClient>(rt, virtualNetwork.host(address()), optionsOf(number))) {
    remote->connect(receiverAddress, receiverPort);
}

void Phone::act() {
    if (resting) return;
    doIt(nextAct());
    runtime.postMainAfter(seconds(0.05) + seconds(0.001) * static_cast<int>(chance.below(500)), [this] { act(); });
}

void Phone::rest() {
    resting = true;
    network.fail(address(), VirtualNetwork::Call::send, 0);
    for (int i = 0; i < stripCount; ++i)
        release(*Strip::of(i));
}

Duration Phone::actLast() {
    SeededRandom last = chanceOf(scenario.seed, "last acts");
    if (!last.oneIn(3)) return Duration::zero();
    const Duration length = seconds(0.001) * static_cast<int>(1 + last.below(300));
    const auto later = [&](auto command) {
        runtime.postMainAfter(length * static_cast<int>(last.below(100)) / 100, std::move(command));
    };
    const auto strip = [&] { return *Strip::of(static_cast<int>(last.below(stripCount))); };
    for (std::uint64_t hands = 1 + last.below(3); hands > 0; --hands)
        later([this, held = strip()] { touch(held); });
    for (std::uint64_t presses = last.below(3); presses > 0; --presses)
        later([this, pressed = strip()] { remote->send(remote::mutePressCommand(pressed)); });
    if (last.oneIn(2)) later([this, asked = strip()] { remote->send(remote::setAutoModeCommand(asked, anyMode())); });
    if (last.oneIn(4)) later([this] { remote->send(remote::seekBankCommand(anyTrack())); });
    return length;
}

Act Phone::nextAct() {
    const int all = std::accumulate(scenario.habits.begin(), scenario.habits.end(), 0);
    int left = static_cast<int>(chance.below(static_cast<std::uint64_t>(all)));
    std::size_t act = 0;
    while (left >= scenario.habits[act])
        left -= scenario.habits[act++];
    return static_cast<Act>(act);
}

void Phone::doIt(Act act) {
    const Strip strip = anyStrip();
    switch (act) {
    case Act::playFader:
        touch(strip);
        return gesture(strip, 1 + static_cast<int>(chance.below(20)));
    case Act::pressSwitch:
        return press(strip);
    case Act::turnPot:
        return remote->send(remote::vpotDeltaCommand(strip, static_cast<std::int8_t>(chance.below(256))));
    case Act::changePanSide:
        return remote->send(remote::panModeToggleCommand());
    case Act::seekPan:
        return remote->send(remote::panSeekCommand(strip, static_cast<std::uint8_t>(chance.below(13))));
    case Act::moveBank:
        return remote->send(remote::bankMoveCommand(static_cast<remote::Move>(chance.below(4))));
    case Act::seekBank:
        return remote->send(remote::seekBankCommand(anyTrack()));
    case Act::stormOfSeeks:
        return storm(2 + static_cast<int>(chance.below(30)));
    case Act::scan:
        return scan();
    case Act::setGroupFaders:
    case Act::setGroupMode:
    case Act::captureRange:
        return walk(act);
    case Act::setMode:
        return setMode(strip);
    case Act::takeOver:
        if (chance.oneIn(4)) remote->takeOver();
        return;
    case Act::walkOut:
        if (chance.oneIn(6)) walkOut(seconds(0.5) * static_cast<int>(1 + chance.below(18)));
        return;
    case Act::setGroupSwitches:
    case Act::toggleInputMonitor:
        return wishOfService(act, strip);
    }
}

bool Phone::mayAskFor(TimePoint& next, Duration pause) {
    const TimePoint now = runtime.now();
    if (now < next) return false;
    next = now + pause;
    return true;
}

void Phone::gesture(Strip strip, int movesLeft) {
    if (resting) return;
    remote->move(strip, anyFader());
    if (scenario.hardships.phonesMove && roaming.oneIn(60)) roam();
    if (movesLeft > 1) {
        runtime.postMainAfter(seconds(0.02), [this, strip, movesLeft] { gesture(strip, movesLeft - 1); });
    } else if (!chance.oneIn(8)) {
        release(strip);
    }
}

void Phone::touch(Strip strip) {
    if (repeatsTouches) {
        remote->touch(strip);
    } else {
        remote->send(remote::faderTouchCommand(strip));
    }
}

void Phone::release(Strip strip) {
    if (repeatsTouches) {
        remote->release(strip);
    } else {
        remote->send(remote::faderReleaseCommand(strip));
    }
}

void Phone::press(Strip strip) {
    constexpr std::array presses{remote::mutePressCommand, remote::soloPressCommand, remote::recArmPressCommand,
                                 remote::selectPressCommand};
    remote->send(presses[static_cast<std::size_t>(chance.below(presses.size()))](strip));
}

void Phone::storm(int seeksLeft) {
    if (resting) return;
    remote->send(remote::seekBankCommand(anyTrack()));
    if (seeksLeft <= 1) return;
    runtime.postMainAfter(seconds(0.001) * static_cast<int>(5 + chance.below(40)),
                          [this, seeksLeft] { storm(seeksLeft - 1); });
}

void Phone::scan() {
    if (mayAskFor(nextScan, seconds(15))) remote->send(remote::recalibrateCommand());
}

void Phone::walk(Act act) {
    if (!mayAskFor(nextWalk, seconds(3))) return;
    const std::uint64_t members = 1 + chance.below(mostMembers);
    if (act == Act::captureRange) {
        const auto tracks = static_cast<std::uint8_t>(1 + chance.below(mostRangeTracks));
        return remote->send(remote::visibleRangeCommand(anyTrack(), tracks));
    }
    std::vector<std::pair<remote::Member, FaderValue>> entries;
    std::vector<remote::Member> tracks;
    for (std::uint64_t i = 0; i < members; ++i) {
        tracks.push_back(anyTrack());
        entries.emplace_back(tracks.back(), anyFader());
    }
    if (act == Act::setGroupFaders) return remote->send(remote::groupFadersCommand(entries));
    remote->send(remote::groupAutoModeCommand(anyMode(), tracks));
}

void Phone::setMode(Strip strip) {
    if (mayAskFor(nextMode, seconds(0.7))) remote->send(remote::setAutoModeCommand(strip, anyMode()));
}

void Phone::walkOut(Duration absence) {
    network.fail(address(), VirtualNetwork::Call::send, ENETDOWN);
    runtime.postMainAfter(absence,
                          [&net = network, own = ownAddress] { net.fail(*own, VirtualNetwork::Call::send, 0); });
}

// What goes to the scripting service and not to the surfaces.
void Phone::wishOfService(Act act, Strip strip) {
    if (!mayAskFor(nextWish, seconds(0.5))) return;
    if (act == Act::toggleInputMonitor) return remote->send(remote::inputMonitorToggleCommand(strip));
    const bool on = chance.oneIn(2);
    std::vector<remote::Member> tracks(1 + chance.below(mostMembers));
    std::ranges::generate(tracks, [this] { return anyTrack(); });
    remote->send(chance.oneIn(2) ? remote::groupMuteCommand(on, tracks) : remote::groupSoloCommand(on, tracks));
}

// Into another network, with the same socket.
void Phone::roam() {
    const std::string next = "10.0." + std::to_string(number) + "." + std::to_string(++moves);
    network.move(address(), next);
    *ownAddress = next;
}

Strip Phone::anyStrip() {
    return *Strip::of(static_cast<int>(chance.below(stripCount)));
}

// Of the session, or a little beyond its end.
remote::Member Phone::anyTrack() {
    return static_cast<remote::Member>(chance.below(static_cast<std::uint64_t>(scenario.tracks) + 4));
}

FaderValue Phone::anyFader() {
    return FaderValue::ofRaw(static_cast<std::uint16_t>(chance.below(16384)));
}

remote::AutoModeKey Phone::anyMode() {
    return static_cast<remote::AutoModeKey>(chance.below(6));
}

} // namespace lumbrine::simulation
