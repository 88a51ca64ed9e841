#include "model/state/session.h"

#include <algorithm>
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
