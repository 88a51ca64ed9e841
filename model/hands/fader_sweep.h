// The test sweep: moves the fader of strip 0 all the way up and down again, so that somebody who has just connected
// everything sees Pro Tools' first fader follow.
#pragma once

#include "model/hands/surfaces.h"
#include "model/state/jobs.h"

namespace lumbrine {

class FaderSweep {
public:
    static constexpr int steps = 20;                     // from one end to the other
    static constexpr Duration interval = seconds(0.035); // after each position

    FaderSweep(const Jobs& jobs, ActivityLog& log, Surfaces& surfaces);

    // Touches the fader, takes it through all positions up and the same ones down, and lets go one interval after the
    // last: 1.47 s, in the background. While one sweep runs, another does nothing. Main thread.
    void run();

private:
    void sweep();

    const Jobs& jobs;
    ActivityLog& log;
    Surfaces& surfaces;
    bool running = false; // main thread
};

} // namespace lumbrine
