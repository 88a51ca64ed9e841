#include "tests/simulation/surroundings.h"

#include <algorithm>
#include <cerrno>

namespace lumbrine::simulation {

namespace {

Duration between(SeededRandom& chance, double shortest, double longest) {
    return seconds(shortest + (longest - shortest) * chance.unit());
}

} // namespace

Surroundings::Surroundings(World& simulatedWorld) : world(simulatedWorld) {
    const Hardships& wanted = world.scenario.hardships;
    add(wanted.wiFiGoesSilent, "wi-fi-goes-silent", [this](SeededRandom& chance) { return changeWiFi(chance); });
    add(wanted.socketIsFull, "socket-is-full", [this](SeededRandom& chance) { return fillSocket(chance); });
    add(wanted.machineSleeps, "machine-sleeps", [this](SeededRandom& chance) { return sleepAndWake(chance); });
    if (wanted.secondReceiver) secondReceiver = std::make_unique<SecondReceiver>(world.runtime, world.network);
    if (wanted.falseReceiver) falseReceiver = std::make_unique<FalseReceiver>(world.runtime, world.network);
    add(wanted.secondReceiver, "second-receiver", [this](SeededRandom& chance) {
        secondReceiver->forge(chance);
        return between(chance, 1, 9);
    });
    add(wanted.falseReceiver, "false-receiver", [this](SeededRandom& chance) {
        falseReceiver->speak(chance);
        return between(chance, 1, 9);
    });
    if (!recurring.empty()) timer = world.runtime.repeatOnMain(seconds(0.05), [this] { look(); });
}

void Surroundings::rest() {
    timer.reset();
    world.runtime.endStandstills();
    for (const auto& phone : world.phones)
        world.network.cutOff(phone->address(), false);
    world.network.cutOff(receiverAddress, false);
    world.network.fail(receiverAddress, VirtualNetwork::Call::send, 0);
    secondReceiver.reset();
    falseReceiver.reset();
    if (!world.scenario.hardships.strangers()) return;
    // What two answer each other without end would go on without anybody who began it.
    world.runtime.runUntilIdle();
    world.network.loseWhatIsUnderWay();
}

void Surroundings::add(bool want, std::string_view name, const Strike& strike) {
    if (!want) return;
    SeededRandom chance = chanceOf(world.scenario.seed, std::string(name) + " strikes");
    const TimePoint first = world.runtime.now() + between(chance, 1, 15);
    recurring.push_back({chance, first, strike});
}

void Surroundings::look() {
    for (Recurring& each : recurring) {
        if (world.runtime.now() < each.next) continue;
        const Duration pause = each.strike(each.chance); // may move the clock
        each.next = world.runtime.now() + pause;
    }
}

// Silent by turns, and not.
Duration Surroundings::changeWiFi(SeededRandom& chance) {
    if (!allAreSilent && silentPhone == nullptr) {
        const std::size_t whose = chance.below(world.phones.size() + 1);
        allAreSilent = whose == world.phones.size();
        if (!allAreSilent) silentPhone = world.phones[whose].get();
        world.network.cutOff(allAreSilent ? receiverAddress : silentPhone->address(), true);
        return between(chance, 0.5, 6);
    }
    world.network.cutOff(allAreSilent ? receiverAddress : silentPhone->address(), false);
    allAreSilent = false;
    silentPhone = nullptr;
    return between(chance, 1, 15);
}

Duration Surroundings::fillSocket(SeededRandom& chance) {
    socketIsFull = !socketIsFull;
    world.network.fail(receiverAddress, VirtualNetwork::Call::send, socketIsFull ? EAGAIN : 0);
    return socketIsFull ? between(chance, 0.02, 1) : between(chance, 1, 10);
}

Duration Surroundings::sleepAndWake(SeededRandom& chance) {
    const Duration length = between(chance, 60, 600);
    world.network.loseWhatIsUnderWay();
    world.runtime.sleepMachine(length);
    sleep += length;
    return between(chance, 5, 30);
}

} // namespace lumbrine::simulation
