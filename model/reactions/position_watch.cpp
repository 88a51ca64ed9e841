#include "model/reactions/position_watch.h"

#include <algorithm>

namespace lumbrine {

PositionWatch::PositionWatch(Runtime& rt, ReceiverState& receiverState, Parts otherParts, Bilingual bilingual)
    : runtime(rt), state(receiverState), parts(otherParts), text(bilingual) {}

bool PositionWatch::positionIsStuck() const {
    const auto shown = [](const std::string& name) { return !trimSpaces(name).empty(); };
    return state.published.huiConnected && state.published.bankOffset < 0 && !state.published.trackMap.empty() &&
           state.quiet() && !state.transportRunning() && std::ranges::any_of(parts.bankMap.window(), shown);
}

void PositionWatch::watchStuckPosition() {
    int& ticks = state.bank.locateStuckTicks;
    ticks = positionIsStuck() ? ticks + 1 : 0;
    if (ticks < stuckTickLimit) return;
    ticks = 0;
    parts.log.appendLog(text("⚠ Position match keeps failing — rebuilding the track map",
                             "⚠ 位置照合が復帰しないため、トラック地図を作り直します"));
    // Without a map the scan is admitted.
    state.published.trackMap.clear();
    state.published.changed();
    scan();
}

void PositionWatch::watchMissingMap() {
    if (!state.published.huiConnected || !state.published.trackMap.empty() || state.published.calibrating) return;
    const TimePoint now = runtime.now();
    if (now - state.presence.firstPingAt > pingRunBeforeScan && now - state.bank.lastAutoCalibrationAt > betweenScans)
        scan();
}

void PositionWatch::scan() {
    state.bank.lastAutoCalibrationAt = runtime.now();
    parts.calibration.calibrateBanks(false);
}

} // namespace lumbrine
