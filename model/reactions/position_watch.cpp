#include "model/reactions/position_watch.h"

#include "base/blank_text.h"

#include <algorithm>

namespace lumbrine {

PositionWatch::PositionWatch(Runtime& runtime, ReceiverState& state, ActivityLog& log, Parts parts)
    : runtime(runtime), state(state), log(log), parts(parts) {}

bool PositionWatch::showsNames() const {
    return !std::ranges::all_of(parts.bankMap.window(), isBlank);
}

// After two scans that agree another one finds out more only where other names are shown since, and lie nowhere in the
// map.
bool PositionWatch::positionIsStuck() const {
    const bool mapIsDoubtful = parts.bankMap.window() != state.scans.endedOn && !parts.bankMap.fitsMap();
    return state.published.huiConnected && state.published.bankOffset < 0 && !state.published.session.empty() &&
           state.quiet() && !state.transportRunning() && showsNames() &&
           (!state.scans.repeated || mapIsDoubtful);
}

// Without a session Pro Tools shows nothing on all strips. The next one may look the same where the user is; the ids of
// a track list would tell, so without them it is scanned.
void PositionWatch::watchClosedSession() {
    const std::vector<Track>& tracks = state.published.session.tracks;
    const auto blanks = std::ranges::count_if(tracks, isBlank, &Track::display);
    const bool mayBeAView = blanks >= state.published.winW && !tracks.empty();
    const bool isJudged = state.published.huiConnected && state.quiet() && !tracks.empty();
    if (isJudged && !showsNames()) {
        const bool idsTell =
            std::ranges::any_of(parts.metadata.banked(), [](const TrackIdentity& track) { return !track.id.empty(); });
        if (!mayBeAView && !idsTell) ++blankTicks;
        return;
    }
    const bool isAnother = isJudged && blankTicks >= closedTicks;
    if (isAnother && (state.transportRunning() || state.handsOn(runtime.now()))) return;
    blankTicks = 0;
    if (isAnother) parts.calibration.scanAnother();
}

// A window that fits the map nowhere for so long is of another session, or of one that has changed.
void PositionWatch::watchStuckPosition() {
    int& ticks = state.scans.locateStuckTicks;
    ticks = positionIsStuck() ? ticks + 1 : 0;
    if (ticks < stuckTickLimit || state.handsOn(runtime.now())) return;
    ticks = 0;
    log.sayOnceAMinute("⚠ Position match keeps failing — rebuilding the track map",
                       "⚠ 位置照合が復帰しないため、トラック地図を作り直します");
    parts.calibration.forgetMap();
    scan();
}

void PositionWatch::watchMissingMap() {
    const bool scanning = state.published.calibrating();
    const TimePoint now = runtime.now();
    if (!state.published.huiConnected || !state.published.session.empty() || scanning || state.handsOn(now)) return;
    if (now - state.presence.firstPingAt <= pingRunBeforeScan) return;
    if (!parts.calibration.mayFindTracks()) return;
    const bool isNews = state.scans.sawNothing;
    if (isNews || now - state.scans.lastAutoCalibrationAt > betweenScans) scan();
}

void PositionWatch::scan() {
    state.scans.lastAutoCalibrationAt = runtime.now();
    parts.calibration.calibrateBanks(false);
}

} // namespace lumbrine
