#include "model/hands/surface_desk.h"

#include <algorithm>
#include <cassert>

namespace lumbrine {

namespace {

constexpr Duration settleBeforeAction = seconds(0.05); // Pro Tools takes a mode's button only after it saw AUTO go down
constexpr Duration modePressTime = seconds(0.06);
constexpr Duration displayTime = seconds(0.15); // in which Pro Tools has written the mode on the display

} // namespace

SurfaceDesk::SurfaceDesk(const Jobs& jobs, Surfaces& surfaces) : jobs(jobs), surfaces(surfaces) {}

void SurfaceDesk::pressBank(int port) {
    assert(!jobs.runtime.onMain());
    surfaces.engine(SurfaceID::A).channelMove(port);
}

void SurfaceDesk::holdAuto(Strip strip, const std::function<bool()>& goesOn, const std::function<void()>& whileHeld) {
    if (!goesOn()) return;
    HUIEngine& engine = surfaces.engineOf(strip);
    engine.switchEdge(strip.engineStrip(), hui::autoPort, true);
    if (whileHeld) {
        wait(settleBeforeAction, goesOn);
        if (goesOn()) whileHeld();
    }
    wait(displayTime, goesOn);
    engine.switchEdge(strip.engineStrip(), hui::autoPort, false);
}

void SurfaceDesk::wait(Duration time, const std::function<bool()>& goesOn) {
    for (Duration left = time; left > Duration::zero() && goesOn(); left -= holdLook)
        jobs.runtime.sleepFor(std::min(left, holdLook));
}

void SurfaceDesk::pressMode(Strip strip, int port) {
    HUIEngine& engine = surfaces.engineOf(strip);
    engine.switchEdge(hui::autoModeZone, port, true);
    jobs.runtime.sleepFor(modePressTime);
    engine.switchEdge(hui::autoModeZone, port, false);
}

void SurfaceDesk::resetPanSide(SurfaceID surface) {
    surfaces.engine(surface).resetPanAssignToLeft();
}

void SurfaceDesk::flipPanSide(SurfaceID surface) {
    HUIEngine& engine = surfaces.engine(surface);
    engine.flipPanSide();
    engine.pressSwitch(hui::assignZone, hui::panAssignPort);
}

} // namespace lumbrine
