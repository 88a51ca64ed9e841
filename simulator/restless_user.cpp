#include "simulator/restless_user.h"

#include <string>

namespace lumbrine {

RestlessUser::RestlessUser(SimulatedSession& session, SimulatedHUIHost& host, Duration every, std::uint64_t seed)
    : session(session), host(host), every(every), chance(seed),
      next(every > Duration::zero() ? TimePoint::min() : TimePoint::max()) {}

void RestlessUser::advance(TimePoint now) {
    if (every <= Duration::zero()) return;
    if (!planned) plan(now);
    while (now >= next) {
        act();
        plan(next);
    }
}

void RestlessUser::rest() {
    every = Duration::zero();
    next = TimePoint::max();
}

void RestlessUser::plan(TimePoint now) {
    planned = true;
    const Duration least = every - every / 2;
    next = now + least + Duration(static_cast<Duration::rep>(chance.unit() * static_cast<double>(every.count())));
}

int RestlessUser::anyTrack() {
    const auto& tracks = session.tracks();
    return tracks.empty() ? 0 : tracks[chance.below(tracks.size())].id;
}

void RestlessUser::act() {
    constexpr std::uint64_t acts = 10;
    constexpr std::uint64_t modes = 5;
    constexpr std::size_t fewestTracks = 4;
    const std::size_t count = session.tracks().size();
    if (session.transport().playing && chance.oneIn(2)) return session.stop();
    switch (chance.below(acts)) {
    case 0:
    case 1:
        host.bank(static_cast<BankButton>(chance.below(4)));
        break;
    case 2:
        host.scrollTo(static_cast<int>(chance.below(count + 1)));
        break;
    case 3:
        session.rename(anyTrack(), "Take " + std::to_string(++given));
        break;
    case 4: {
        SimulatedTrack track;
        track.name = "New " + std::to_string(++given);
        session.add(track, chance.below(count + 1));
        break;
    }
    case 5:
        if (count > fewestTracks) session.remove(anyTrack());
        break;
    case 6:
        session.change(anyTrack(), [](SimulatedTrack& track) { track.hidden = !track.hidden; });
        break;
    // One random draw for each statement: the compiler may evaluate arguments in any order, but a seed must replay
    // everywhere.
    case 7: {
        const std::size_t position = chance.below(count + 1);
        session.move(anyTrack(), position);
        break;
    }
    case 8: {
        const auto mode = static_cast<SimulatedTrack::Automation>(chance.below(modes));
        session.change(anyTrack(), [mode](SimulatedTrack& track) { track.automation = mode; });
        break;
    }
    case 9:
        useTransport();
        break;
    default:
        break;
    }
}

// Plays for a moment, not to the end.
void RestlessUser::useTransport() {
    if (chance.oneIn(3)) session.record();
    session.play();
}

} // namespace lumbrine
