#include "model/reactions/fingers.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

Fingers::Fingers(const Jobs& jobs, ReceiverState& state, Surfaces& surfaces, ClientMirror& mirror)
    : jobs(jobs), state(state), surfaces(surfaces), mirror(mirror) {}

void Fingers::touch(Strip strip, TimePoint arrived) {
    const bool again = isRepeat(strip, arrived);
    HUIEngine& engine = surfaces.engineOf(strip);
    if (!again) state.presence.lastHand = jobs.runtime.now();
    const bool there = again ? engine.holdByHand(strip.engineStrip()) : engine.touchByHand(strip.engineStrip());
    if (again && there) state.presence.lastHand = jobs.runtime.now();
    jobs.runOnMain([this, strip, arrived, counts = there || !again] {
        if (repeats && !std::exchange(awaiting, true)) awaitSilence();
        if (!counts) return;
        StripState& held = state.published.strip(strip);
        // A job that has taken the surfaces since has let it go.
        held.touched = surfaces.engineOf(strip).isDown(strip.engineStrip(), hui::touchPort);
        held.movedByClient = arrived;
    });
}

bool Fingers::isRepeat(Strip strip, TimePoint arrived) {
    const std::optional<TimePoint> last = std::exchange(touched[strip.slot()], arrived);
    if (!last) return false;
    if (arrived - *last >= shortestRepeat && arrived - *last <= longestRepeat) repeats = true;
    return repeats;
}

void Fingers::release(Strip strip) {
    touched[strip.slot()].reset();
    surfaces.engineOf(strip).releaseByHand(strip.engineStrip());
    jobs.runOnMain([this, strip] {
        StripState& left = state.published.strip(strip);
        left.liftFinger(jobs.runtime.now());
        mirror.sendFaderToClient(strip, left.fader);
    });
}

// Here and not on the main thread, so that what the new owner touches next stays.
void Fingers::newOwner() {
    touched.fill(std::nullopt);
    repeats = false;
    surfaces.letHandsGo();
}

void Fingers::awaitSilence() {
    const TimePoint due = state.presence.lastUDP.load() + silence;
    jobs.onMainAfter(due - jobs.runtime.now(), [this] { look(); });
}

void Fingers::look() {
    const bool anyDown = std::ranges::any_of(state.published.strips, &StripState::touched);
    awaiting = repeats && anyDown;
    if (!awaiting) return;
    if (jobs.runtime.now() - state.presence.lastUDP.load() < silence) return awaitSilence();
    awaiting = false;
    surfaces.loseTouch();
    for (StripState& strip : state.published.strips)
        strip.liftFinger(jobs.runtime.now());
}

} // namespace lumbrine
