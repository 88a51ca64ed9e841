#include "model/hands/pan.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>

namespace lumbrine {

namespace {

constexpr int lowestTarget = 1;
constexpr int highestTarget = 11;

// HUI does not say how many clicks one ring position takes. A large first burst covers most of the way, small ones
// settle the rest.
constexpr int firstClicksPerPosition = 9;
constexpr int laterClicks = 3;

} // namespace

Pan::Pan(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Surfaces& surfaces, SurfaceDesk& desk,
         DeskQueue& queue, ClientMirror& mirror)
    : jobs(jobs), state(state), log(log), surfaces(surfaces), desk(desk), queue(queue), mirror(mirror) {}

void Pan::setPanMode(bool right) {
    assert(jobs.runtime.onMain());
    if (right == state.published.panRight) return;
    state.published.panRight = right;
    sideSince = jobs.runtime.now();
    mirror.sendPanMode();
    log.say(right ? "← Pan mode: Pan Right" : "← Pan mode: Pan Left",
            right ? "← パンモード: Pan Right(右)" : "← パンモード: Pan Left(左)");
    state.published.changed();
}

void Pan::toggleSide() {
    assert(jobs.runtime.onMain());
    for (const SurfaceID surface : {SurfaceID::A, SurfaceID::B})
        if (!beingSet.contains(surface)) desk.flipPanSide(surface);
    for (auto& [surface, toggled] : beingSet)
        toggled = true;
    setPanMode(!state.published.panRight);
}

void Pan::setSide(SurfaceID surface, Side side) {
    if (!jobs.runtime.syncMain([&] { return beingSet.try_emplace(surface, false).second; })) return;
    desk.resetPanSide(surface);
    jobs.runtime.syncMain([&] {
        const bool toggled = beingSet.extract(surface).mapped();
        if (side == Side::left && !toggled) setPanMode(false);
        if (state.published.panRight) desk.flipPanSide(surface);
    });
}

void Pan::believeRings() {
    assert(jobs.runtime.onMain());
    if (jobs.runtime.now() - sideSince < sideFollows) return;
    const int side = state.published.panRight ? 1 : 0;
    for (int i = 0; i < stripCount; ++i) {
        StripState& strip = state.published.strip(*Strip::of(i));
        Ring& ring = strip.pan[static_cast<std::size_t>(side)];
        if (!strip.shownRing || ring == *strip.shownRing) continue;
        ring = *strip.shownRing;
        if (i < state.published.winW) mirror.sendPan(*Strip::of(i), side);
    }
}

void Pan::seek(int strip, int target, Asked asked) {
    const auto wanted = Strip::of(strip);
    if (!wanted || target < lowestTarget || target > highestTarget) return;
    if (!queue.isClosed()) return begin(*wanted, target);
    queue.performLater({.name = command_name::pan,
                        .track = state.shownOn(*wanted),
                        .asked = asked,
                        .perform = [this, target](Strip shown) {
                            begin(shown, target);
                            return true;
                        }});
}

void Pan::begin(Strip strip, int target) {
    state.published.strip(strip).panSeek =
        PanTarget{.position = target, .until = jobs.runtime.now() + longestSeek, .id = ++seeksBegun};
    panSeekStep(strip);
}

void Pan::panSeekStep(Strip strip) {
    assert(jobs.runtime.onMain());
    StripState& shown = state.published.strip(strip);
    if (!shown.panSeek) return;
    const int current = shown.pan[state.published.panRight ? 1 : 0].position;
    const int distance = shown.panSeek->position - current;
    // A machine that has slept wakes up with other tracks on the strips.
    const bool isLate = jobs.runtime.now() >= shown.panSeek->until;
    if (distance == 0 || shown.panSeek->steps >= maxSteps || isLate) {
        shown.panSeek.reset();
        return;
    }
    const int clicks = shown.panSeek->steps == 0 ? std::abs(distance) * firstClicksPerPosition : laterClicks;
    for (int i = 0; i < clicks && shown.panSeek; ++i)
        if (!surfaces.engineOf(strip).turnByHand(strip.engineStrip(), distance > 0 ? 1 : -1)) shown.panSeek.reset();
    if (!shown.panSeek) return;
    ++shown.panSeek->steps;
    jobs.onMainAfter(stepInterval, [this, strip, id = shown.panSeek->id] {
        const auto& now = state.published.strip(strip).panSeek;
        if (now && now->id == id) panSeekStep(strip);
    });
}

} // namespace lumbrine
