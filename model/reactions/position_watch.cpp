#include "model/reactions/position_watch.h"

#include "base/blank_text.h"

#include <algorithm>

namespace lumbrine {

PositionWatch::PositionWatch(Runtime& runtime, ReceiverState& state, ActivityLog& log, Parts parts)
    : runtime(runtime), state(state), log(log), parts(parts) {}

bool PositionWatch::showsNames() const {
    return !std::ranges::all_of(parts.bankMap.window(), isBlank);
}

bool PositionWatch::positionIsStuck() const {
    return state.published.huiConnected && state.published.bankOffset < 0 && !state.published.session.empty() &&
           state.quiet() && !state.transportRunning() && showsNames();
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
    // A session without tracks stays so until a display or the track list shows one.
    if (state.scans.sawNothing && !showsNames() && parts.metadata.banked().empty()) return;
    if (now - state.presence.firstPingAt > pingRunBeforeScan && now - state.scans.lastAutoCalibrationAt > betweenScans)
        scan();
}

void PositionWatch::scan() {
    state.scans.lastAutoCalibrationAt = runtime.now();
    parts.calibration.calibrateBanks(false);
}

} // namespace lumbrine
