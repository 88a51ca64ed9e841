#include "model/state/session.h"

#include <algorithm>
#include <map>
#include <utility>

namespace lumbrine {

bool isSame(const TrackIdentity& left, const TrackIdentity& right) {
    if (!left.id.empty() && !right.id.empty()) return left.id == right.id;
    return left.name == right.name && (left.index == right.index || left.index == 0 || right.index == 0);
}

Session Session::of(const std::vector<std::string>& displays) {
    Session session;
    session.tracks.reserve(displays.size());
    for (const std::string& display : displays)
        session.tracks.emplace_back().display = display;
    return session;
}

// Tracks are known again by their ids, and those without by names that occur once.
Session followed(const Session& before, const std::vector<TrackIdentity>& listed) {
    std::map<std::string, const Track*> byID, byName;
    for (const Track& track : before.tracks) {
        if (!track.id.empty()) byID[track.id] = &track;
        if (track.name && !byName.try_emplace(*track.name, &track).second) byName[*track.name] = nullptr;
    }
    std::map<std::string, int> namesakes;
    for (const TrackIdentity& track : listed)
        ++namesakes[track.name];
    const auto sameBefore = [&](const TrackIdentity& track) -> const Track* {
        if (const auto found = byID.find(track.id); found != byID.end()) return found->second;
        const auto found = byName.find(track.name);
        return track.id.empty() && found != byName.end() && namesakes[track.name] == 1 ? found->second : nullptr;
    };
    Session session{.tracks = {}, .listed = before.listed, .surveyed = before.surveyed};
    for (const TrackIdentity& track : listed) {
        const Track* const known = sameBefore(track);
        Track& added = session.tracks.emplace_back(known != nullptr ? *known : Track{});
        added.displayKnown = known != nullptr && known->displayKnown && known->name == track.name;
        added.name = track.name;
        added.id = track.id;
        added.listIndex = track.index;
    }
    return session;
}

bool sameDisplays(const Session& left, const Session& right) {
    return std::ranges::equal(left.tracks, right.tracks, {}, &Track::display, &Track::display);
}

void carryOver(const Session& before, Session& scanned) {
    scanned.surveyed = before.surveyed;
    if (!sameDisplays(before, scanned)) return;
    scanned.listed = before.listed;
    for (std::size_t i = 0; i < scanned.size(); ++i) {
        const std::optional<double> seen = scanned.tracks[i].fader;
        scanned.tracks[i] = before.tracks[i];
        scanned.tracks[i].fader = seen;
    }
}

} // namespace lumbrine
