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
           state.quiet() && !state.transportRunning() && showsNames() && (!state.scans.repeated || mapIsDoubtful);
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
