#include "tests/simulation/storm.h"

#include "remote/command_builder.h"

namespace lumbrine::simulation {

namespace {

constexpr std::uint64_t kinds = 8;

} // namespace

Storm::Storm(World& simulatedWorld)
    : world(simulatedWorld), chance(chanceOf(simulatedWorld.scenario.seed, "storms of commands")) {}

void Storm::act() {
    if (resting) return;
    Phone& phone = *world.phones[chance.below(world.phones.size())];
    if (chance.oneIn(2)) phone.client().takeOver();
    const std::uint64_t kind = chance.below(kinds);
    for (std::uint64_t commands = 5 + chance.below(60); commands > 0; --commands)
        phone.client().send(command(kind));
    if (chance.oneIn(2))
        world.runtime.postMainAfter(seconds(0.001) * static_cast<int>(1 + chance.below(1500)),
                                    [this, next = chance.below(world.phones.size())] {
                                        if (!resting) world.phones[next]->client().takeOver();
                                    });
    world.runtime.postMainAfter(seconds(1) * static_cast<int>(3 + chance.below(8)), [this] { act(); });
}

Bytes Storm::command(std::uint64_t kind) {
    const auto mode = static_cast<remote::AutoModeKey>(chance.below(6));
    switch (kind) {
    case 0:
        return remote::setAutoModeCommand(anyStrip(), mode);
    case 1:
        return remote::visibleRangeCommand(anyTrack(), static_cast<std::uint8_t>(1 + chance.below(8)));
    case 2:
        return remote::groupFadersCommand(std::vector{std::pair(anyTrack(), FaderValue::ofRaw(8000))});
    case 3:
        return remote::groupAutoModeCommand(mode, members());
    case 4:
        return remote::groupMuteCommand(chance.oneIn(2), members());
    case 5:
        return remote::groupSoloCommand(chance.oneIn(2), members());
    case 6:
        return remote::inputMonitorToggleCommand(anyStrip());
    default:
        return remote::helloCommand(std::nullopt);
    }
}

std::vector<remote::Member> Storm::members() {
    return {anyTrack(), anyTrack()};
}

// Of the session, or a little beyond its end.
remote::Member Storm::anyTrack() {
    return static_cast<remote::Member>(chance.below(static_cast<std::uint64_t>(world.scenario.tracks) + 4));
}

Strip Storm::anyStrip() {
    return *Strip::of(static_cast<int>(chance.below(stripCount)));
}

} // namespace lumbrine::simulation
