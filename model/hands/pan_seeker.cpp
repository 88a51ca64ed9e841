#include "model/hands/pan_seeker.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>

namespace lumbrine {

namespace {

constexpr int lowestTarget = 1;
constexpr int highestTarget = 11;
constexpr int firstClicksPerPosition = 9;
constexpr int laterClicks = 3;

} // namespace

PanSeeker::PanSeeker(const Jobs& modelJobs, ReceiverState& receiverState, Surfaces& hostSurfaces)
    : jobs(modelJobs), state(receiverState), surfaces(hostSurfaces) {}

void PanSeeker::seek(int strip, int target) {
    const auto wanted = Strip::of(strip);
    if (!wanted || target < lowestTarget || target > highestTarget) return;
    state.automation.panSeekTarget[wanted->slot()] = target;
    state.automation.panSeekIter[wanted->slot()] = 0;
    ++seeksBegun[wanted->slot()];
    panSeekStep(*wanted);
}

void PanSeeker::panSeekStep(Strip strip) {
    assert(jobs.runtime.onMain());
    std::optional<int>& target = state.automation.panSeekTarget[strip.slot()];
    int& steps = state.automation.panSeekIter[strip.slot()];
    if (!target) return;
    const int current = state.mirror.panPos[state.automation.panRightMode ? 1 : 0][strip.slot()];
    if (current == *target || steps >= maxSteps) {
        target.reset();
        steps = 0;
        return;
    }
    const int distance = *target - current;
    const int clicks = steps == 0 ? std::max(std::abs(distance) * firstClicksPerPosition, 1) : laterClicks;
    for (int i = 0; i < clicks; ++i)
        surfaces.engineOf(strip).sendVpotDelta(strip.engineStrip(), distance > 0 ? 1 : -1);
    ++steps;
    jobs.onMainAfter(stepInterval, [this, strip, planner = seeksBegun[strip.slot()]] {
        if (planner == seeksBegun[strip.slot()]) panSeekStep(strip);
    });
}

} // namespace lumbrine
