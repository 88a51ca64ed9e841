#include "tests/simulation/trouble.h"

#include "tests/simulation/surroundings.h"

#include <algorithm>
#include <array>

namespace lumbrine::simulation {

Trouble::Trouble(World& simulatedWorld)
    : world(simulatedWorld), chance(simulatedWorld.scenario.seed * 7 + 3), storm(simulatedWorld),
      ofHost(simulatedWorld, [this](Duration length) { disturb(length); }) {
    const Troubles& wanted = world.scenario.troubles;
    const int surfaces = world.scenario.host.surfaces;
    const auto add = [this](bool want, std::function<void()> kind) {
        if (want) kinds.push_back(std::move(kind));
    };
    add(wanted.surfacesVanish,
        [this, surfaces] { silence(static_cast<int>(chance.below(static_cast<std::uint64_t>(surfaces))), absence()); });
    add(wanted.bothSurfacesFlap, [this] { flap(); });
    add(wanted.secondSurfaceLeaves && surfaces > 1,
        [this] { silence(1, seconds(4) + seconds(1) * static_cast<int>(chance.below(5))); });
    add(wanted.hostSticks, [this] { stick(); });
    add(wanted.portsAreReleased, [this] { releasePorts(); });
    add(wanted.userActs, [this] { actAsUser(); });
    add(wanted.transport, [this] { useTransport(); });
    add(wanted.serviceFails, [this] { failService(); });
    add(wanted.screenFails, [this] { failScreen(); });
    add(wanted.permissionGoes, [this] { withdrawPermission(); });
    add(wanted.commentsChange, [this] { changeComment(); });
}

void Trouble::run() {
    for (const auto& phone : world.phones)
        phone->act();
    if (world.scenario.forger) {
        world.forger = std::make_unique<Forger>(world.runtime, world.network, world.scenario.seed);
        world.forger->act();
    }
    if (world.scenario.storms) storm.act();
    // Until the ports are grabbed.
    disturb(world.scenario.host.grabPortsAfter + seconds(2));
    Surroundings surroundings(world);
    const TimePoint end = world.runtime.now() + world.scenario.trouble;
    const auto left = [&] { return end + surroundings.slept() - world.runtime.now(); };
    while (left() > Duration::zero()) {
        const Duration peace = seconds(0.1) * static_cast<int>(3 + chance.below(25));
        ofHost.runFor(std::min(peace, left()));
        strike();
    }
    surroundings.rest();
    ofHost.end();
    storm.rest();
}

void Trouble::strike() {
    if (!kinds.empty()) kinds[chance.below(kinds.size())]();
}

// Many of about the time after which a surface counts as gone.
Duration Trouble::absence() {
    constexpr std::array absences{seconds(0.5), seconds(1), seconds(1.9), seconds(2.1), seconds(3), seconds(6)};
    return absences[chance.below(absences.size())];
}

void Trouble::silence(int surface, Duration duration) {
    // Meanwhile the host may give the surface up. It pings the surface again at its next full second.
    disturb(duration + seconds(3));
    world.proTools->silence(surface, duration);
}

void Trouble::flap() {
    const Duration duration = absence();
    for (int surface = 0; surface < world.scenario.host.surfaces; ++surface)
        silence(surface, duration);
}

void Trouble::stick() {
    const Duration duration = seconds(0.1) * static_cast<int>(1 + chance.below(30));
    disturb(duration + seconds(1));
    world.proTools->stick(duration);
}

void Trouble::releasePorts() {
    const Duration duration = seconds(0.5) * static_cast<int>(1 + chance.below(10));
    disturb(duration + seconds(3));
    world.proTools->releasePorts();
    world.runtime.postMainAfter(duration, [&host = *world.proTools] { host.grabPorts(); });
}

void Trouble::actAsUser() {
    disturb(seconds(1));
    const std::uint64_t tracks = world.proTools->session().tracks().size();
    switch (chance.below(3)) {
    case 0:
        return world.proTools->bank(static_cast<BankButton>(chance.below(4)));
    case 1:
        return world.proTools->scrollTo(static_cast<int>(chance.below(tracks + 1)));
    default:
        world.proTools->edit([&](SimulatedSession& session) {
            const int id = session.tracks()[chance.below(tracks)].id;
            const auto raw = static_cast<std::uint16_t>(chance.below(16384));
            session.change(id, [raw](SimulatedTrack& track) { track.fader = FaderValue::ofRaw(raw); });
        });
    }
}

void Trouble::useTransport() {
    const bool records = chance.oneIn(2);
    world.proTools->edit([records](SimulatedSession& session) {
        if (session.transport().playing) return session.stop();
        if (records) session.record();
        session.play();
    });
}

void Trouble::failService() {
    SimulatedScripting& scripting = world.proTools->scripting();
    switch (chance.below(4)) {
    case 0:
        return world.service->die();
    case 1:
        return scripting.stall(seconds(1) * static_cast<int>(1 + chance.below(6)));
    case 2:
        return scripting.restart(); // no session is known any more
    default:
        return scripting.refuseNext(1 + static_cast<int>(chance.below(4)));
    }
}

void Trouble::failScreen() {
    constexpr int failOneIn = 15;
    constexpr int vanishOneIn = 25;
    const Duration duration = seconds(0.5) * static_cast<int>(1 + chance.below(8));
    SimulatedAccessibility& screen = world.proTools->screen();
    screen.setFaults(failOneIn, vanishOneIn);
    world.runtime.postMainAfter(duration, [&screen] { screen.setFaults(0, 0); });
}

void Trouble::withdrawPermission() {
    const Duration duration = seconds(0.5) * static_cast<int>(1 + chance.below(8));
    SimulatedAccessibility& screen = world.proTools->screen();
    screen.setTrusted(false);
    world.runtime.postMainAfter(duration, [&screen] { screen.setTrusted(true); });
}

void Trouble::changeComment() {
    world.proTools->edit([this](SimulatedSession& session) {
        const int id = session.tracks()[chance.below(session.tracks().size())].id;
        session.change(id, [&](SimulatedTrack& track) { track.comment = commentOn(id, ++remarks); });
    });
}

void Trouble::disturb(Duration length) {
    disturbed.push_back({world.runtime.now(), world.runtime.now() + length});
}

} // namespace lumbrine::simulation
