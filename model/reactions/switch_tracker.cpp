#include "model/reactions/switch_tracker.h"

#include <algorithm>
#include <cassert>

namespace lumbrine {

SwitchTracker::SwitchTracker(Runtime& rt, ReceiverState& receiverState, ClientMirror& clientMirror,
                             ActivityLog& activityLog)
    : runtime(rt), state(receiverState), mirror(clientMirror), log(activityLog) {}

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
    if (!noteEdge(state.mirror.mute[strip.slot()], on, blinkHold)) return;
    state.published.mutes[strip.slot()] = on;
    state.published.changed();
    mirror.sendSwitchesIfChanged();
}

void SwitchTracker::recLed(Strip strip, bool on) {
    if (noteEdge(state.mirror.rec[strip.slot()], on, on ? blinkHold : recOffHold)) mirror.sendSwitchesIfChanged();
}

void SwitchTracker::soloLed(Strip strip, bool on) {
    assert(runtime.onMain());
    auto& solos = state.mirror.soloCache;
    if (on == solos[strip.slot()]) return;
    solos[strip.slot()] = on;
    state.published.solos[strip.slot()] = on;
    log.appendLog("← LED ch" + std::to_string(strip.index() + 1) + " solo " + (on ? "ON" : "off"));
    if (std::ranges::none_of(solos, [](bool solo) { return solo; })) endMuteBlinks();
    state.published.changed();
    mirror.sendSwitchesIfChanged();
}

void SwitchTracker::endMuteBlinks() {
    const TimePoint now = runtime.now();
    for (std::size_t i = 0; i < stripCount; ++i) {
        FlashingLed& led = state.mirror.mute[i];
        if (led.blinkUntil <= now) continue;
        led.blinkUntil = distantPast;
        led.shortStreak = 0;
        led.rawOn = false;
        state.published.mutes[i] = false;
    }
}

} // namespace lumbrine
