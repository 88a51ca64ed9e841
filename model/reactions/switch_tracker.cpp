#include "model/reactions/switch_tracker.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

SwitchTracker::SwitchTracker(Runtime& runtime, ReceiverState& state, ActivityLog& log, ClientMirror& mirror)
    : runtime(runtime), state(state), log(log), mirror(mirror) {}

bool SwitchTracker::noteEdge(FlashingLed& led, bool on, Duration hold) {
    assert(runtime.onMain());
    if (on == led.rawOn) return false;
    const TimePoint now = runtime.now();
    led.shortStreak = now - led.lastEdge < blinkDetect ? led.shortStreak + 1 : 0;
    // The first edge starts no streak, so this is the third of a quick run.
    if (led.shortStreak > 1) led.blinkUntil = now + hold;
    led.lastEdge = now;
    led.rawOn = on;
    return true;
}

void SwitchTracker::muteLed(Strip strip, bool on) {
    if (!noteEdge(state.published.strip(strip).mute, on, blinkHold)) return;
    state.published.changed();
    mirror.sendSwitchesIfChanged();
}

void SwitchTracker::recLed(Strip strip, bool on) {
    if (noteEdge(state.published.strip(strip).record, on, on ? blinkHold : recOffHold)) mirror.sendSwitchesIfChanged();
}

void SwitchTracker::soloLed(Strip strip, bool on) {
    assert(runtime.onMain());
    if (std::exchange(state.published.strip(strip).solo, on) == on) return;
    log.appendLog("← LED ch" + std::to_string(strip.index() + 1) + " solo " + (on ? "ON" : "off"));
    if (std::ranges::none_of(state.published.strips, &StripState::solo)) endMuteBlinks();
    state.published.changed();
    mirror.sendSwitchesIfChanged();
}

void SwitchTracker::endMuteBlinks() {
    const TimePoint now = runtime.now();
    for (StripState& strip : state.published.strips)
        if (strip.mute.blinkUntil > now) strip.mute = {.lastEdge = strip.mute.lastEdge};
}

} // namespace lumbrine
