#include "model/hands/fader_sweep.h"

#include <cassert>

namespace lumbrine {

namespace {

constexpr int sweptStrip = 0; // of surface A

} // namespace

FaderSweep::FaderSweep(const Jobs& jobs, ActivityLog& log, Surfaces& surfaces)
    : jobs(jobs), log(log), surfaces(surfaces) {}

void FaderSweep::run() {
    assert(jobs.runtime.onMain());
    if (running) return;
    running = true;
    log.say("▶ Test: sending track 1 sweep", "▶ テスト: トラック1 スイープ送信");
    jobs.inBackground(Priority::userInitiated, [this] {
        sweep();
        jobs.runOnMain([this] { running = false; });
    });
}

void FaderSweep::sweep() {
    HUIEngine& engine = surfaces.engine(SurfaceID::A);
    const auto show = [&](int step) {
        engine.sendFader(sweptStrip, static_cast<double>(step) / steps);
        jobs.runtime.sleepFor(interval);
    };
    engine.touch(sweptStrip);
    for (int step = 0; step <= steps; ++step)
        show(step);
    for (int step = steps; step >= 0; --step)
        show(step);
    engine.release(sweptStrip);
}

} // namespace lumbrine
