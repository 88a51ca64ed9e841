#include "simulator/restless_user.h"

#include <string>

namespace lumbrine {

RestlessUser::RestlessUser(SimulatedSession& editedSession, SimulatedHUIHost& bankedHost, Duration interval,
                           std::uint64_t seed)
    : session(editedSession), host(bankedHost), every(interval), chance(seed),
      next(interval > Duration::zero() ? TimePoint::min() : TimePoint::max()) {}

void RestlessUser::advance(TimePoint now) {
    if (every <= Duration::zero()) return;
    if (!planned) plan(now);
    while (now >= next) {
        act();
        plan(next);
    }
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
    constexpr std::uint64_t acts = 8;
    constexpr std::size_t fewestTracks = 4;
    const std::size_t count = session.tracks().size();
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
    case 7:
        session.move(anyTrack(), chance.below(count + 1));
        break;
    default:
        break;
    }
}

} // namespace lumbrine
