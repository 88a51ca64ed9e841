#include "model/bank/map_mender.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

MapMender::MapMender(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts)
    : jobs(jobs), state(state), log(log), parts(parts) {}

void MapMender::watchTrackList() {
    const Session& session = state.published.session;
    const std::vector<TrackIdentity>& listed = parts.metadata.banked();
    const TimePoint now = jobs.runtime.now();
    if (!std::ranges::equal(listed, seen, isSame)) {
        seen = listed;
        seenSince = now;
    }
    const bool isSettled = now - seenSince >= settled;
    if (session.empty() || listed.empty() || !state.quiet() || state.transportRunning()) return;
    // The scan may have met a Pro Tools that did not react.
    const bool mayKnowBetter = !session.sure || (!session.listed && parts.metadata.bankedAreVisible());
    if (mayKnowBetter && isSettled && !parts.calibration.hasLaidOver(listed)) return parts.calibration.scanAnother();
    if (!session.listed || !isNews(listed)) return;

    Session mended = followed(session, listed);
    const auto known = std::ranges::count(mended.tracks, true, &Track::displayKnown);
    if (2 * static_cast<std::size_t>(known) < mended.size()) {
        if (isSettled) parts.calibration.scanAnother();
        return;
    }
    const TrackNames shown = parts.bankMap.window();
    if (locate(mended.tracks, shown) < 0) return;
    if (locate(session.tracks, shown) < 0 || isSettled) take(std::move(mended));
}

// Whether the list has other tracks than the map, or another order.
bool MapMender::isNews(const std::vector<TrackIdentity>& listed) const {
    return !std::ranges::equal(
        state.published.session.tracks, listed, [](const Track& track, const TrackIdentity& one) {
            return !track.id.empty() && !one.id.empty() ? track.id == one.id && track.name == one.name
                                                        : track.name == one.name;
        });
}

void MapMender::take(Session mended) {
    const std::string tracks = std::to_string(mended.size());
    ++state.mapNumber;
    state.published.session = std::move(mended);
    state.published.changed();
    state.fullTableDirty = true;
    log.say("✓ Followed the track list: " + tracks + " tracks",
            "✓ トラック一覧の変更を反映しました（" + tracks + " 本）");
    parts.bankMap.relocalize();
    parts.mirror.sendBankPosToClient();
    parts.mirror.sendVisibleFullNames();
    parts.mirror.sendVisibleColors();
    parts.mirror.sendVisibleInputMons();
    parts.capture.allShown();
    parts.metadata.refreshFullNames();
}

} // namespace lumbrine
