#include "tests/simulation/host_troubles.h"

#include "simulator/default_session.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

constexpr Duration untilShown = seconds(2); // everything of another session
constexpr Duration untilRead = seconds(15); // its comments, which are read every 12 s

Duration tenths(SeededRandom& chance, int least, int most) {
    return seconds(0.1) * (least + static_cast<int>(chance.below(static_cast<std::uint64_t>(most - least + 1))));
}

void nameComments(SimulatedSession& session) {
    session.changeAll([](SimulatedTrack& track) { track.comment = commentOn(track.id, 0); });
}

} // namespace

HostTroubles::HostTroubles(World& simulatedWorld, std::function<void(Duration)> disturb)
    : world(simulatedWorld), disturbed(std::move(disturb)) {
    add("session-closes", &HostTroubles::closeSession);
    add("session-exchanges", &HostTroubles::exchangeSession);
    add("session-templates", &HostTroubles::openSibling);
    add("status-in-progress", &HostTroubles::saveSession);
    add("status-queued", &HostTroubles::saveSession);
    add("dialogs", &HostTroubles::showDialog);
    if (world.service) add("deaf-service", &HostTroubles::deafenService);
}

void HostTroubles::add(std::string_view name, void (HostTroubles::*act)(SeededRandom&)) {
    if (!world.scenario.has(name)) return;
    SeededRandom chance = chanceOf(world.scenario.seed, std::string(name) + " times");
    const TimePoint first = world.runtime.now() + tenths(chance, 40, 120);
    kinds.push_back({chance, first, [this, act](SeededRandom& own) { (this->*act)(own); }});
}

void HostTroubles::runFor(Duration time) {
    const TimePoint end = world.runtime.now() + time;
    while (nextTime() < end) {
        world.runtime.runFor(std::max(nextTime() - world.runtime.now(), Duration::zero()));
        const TimePoint now = world.runtime.now();
        std::vector<std::function<void()>> due;
        for (const auto& [at, what] : afterwards)
            if (at <= now) due.push_back(what);
        std::erase_if(afterwards, [now](const auto& entry) { return entry.first <= now; });
        for (const auto& what : due)
            what();
        for (Kind& kind : kinds) {
            if (kind.next > now) continue;
            kind.act(kind.chance);
            kind.next = now + tenths(kind.chance, 60, 150);
        }
    }
    world.runtime.runFor(std::max(end - world.runtime.now(), Duration::zero()));
}

TimePoint HostTroubles::nextTime() const {
    TimePoint next = TimePoint::max();
    for (const Kind& kind : kinds)
        next = std::min(next, kind.next);
    for (const auto& [at, what] : afterwards)
        next = std::min(next, at);
    return next;
}

void HostTroubles::end() {
    if (kinds.empty()) return;
    if (serviceIsDeaf) world.service->die();
    world.proTools->rest();
    world.runtime.runFor(seconds(0.1));
    world.proTools->edit([](SimulatedSession& session) {
        session.open();
        nameComments(session);
    });
    disturbed(untilShown);
}

void HostTroubles::closeSession(SeededRandom& chance) {
    const Duration duration = tenths(chance, 5, 60);
    disturbed(duration + untilShown);
    world.proTools->edit([](SimulatedSession& session) { session.close(); });
    afterwards.emplace_back(world.runtime.now() + duration,
                            [this] { world.proTools->edit([](SimulatedSession& session) { session.open(); }); });
}

void HostTroubles::exchangeSession(SeededRandom& chance) {
    const int tracks = 1 + static_cast<int>(chance.below(static_cast<std::uint64_t>(2 * world.scenario.tracks)));
    world.proTools->exchangeSession(sessionOf(world.scenario, tracks, chance.next()));
    opensSoon();
}

void HostTroubles::openSibling(SeededRandom& chance) {
    world.proTools->exchangeSession(sessionOfSameTemplate(world.proTools->session(), chance.next()));
    opensSoon();
}

// A track has its number by then, which its comment tells.
void HostTroubles::opensSoon() {
    const Duration opensAfter = world.scenario.host.sessionOpensAfter;
    disturbed(opensAfter + untilShown);
    newestTracks = world.runtime.now() + opensAfter + untilRead;
    afterwards.emplace_back(world.runtime.now() + opensAfter + seconds(0.1),
                            [this] { world.proTools->edit(nameComments); });
}

void HostTroubles::saveSession(SeededRandom& chance) {
    world.proTools->saveSession(tenths(chance, 3, 40));
}

void HostTroubles::showDialog(SeededRandom& chance) {
    const Duration duration = tenths(chance, 5, 80);
    disturbed(duration + untilShown);
    world.proTools->openDialog("Save changes before closing?");
    afterwards.emplace_back(world.runtime.now() + duration, [this] { world.proTools->closeDialog(); });
}

// Nothing is answered and no connection is taken until the program is started again.
void HostTroubles::deafenService(SeededRandom& chance) {
    if (serviceIsDeaf) return;
    const Duration duration = tenths(chance, 20, 300);
    serviceIsDeaf = true;
    world.service->takeNoConnections();
    world.proTools->scripting().stall(duration);
    afterwards.emplace_back(world.runtime.now() + duration, [this] {
        serviceIsDeaf = false;
        world.service->die();
    });
}

} // namespace lumbrine::simulation
