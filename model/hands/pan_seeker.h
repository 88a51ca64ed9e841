// Moving a pan to a ring position by turning the V-Pot until Pro Tools shows that position. The clicks that one
// position takes are not known, so a large first burst covers most of the way and small ones settle it. Main thread
// only.
#pragma once

#include "model/hands/surfaces.h"
#include "model/state/jobs.h"
#include "model/state/receiver_state.h"

namespace lumbrine {

class PanSeeker {
public:
    static constexpr int maxSteps = 41;
    static constexpr Duration stepInterval = seconds(0.035);

    PanSeeker(const Jobs& modelJobs, ReceiverState& receiverState, Surfaces& hostSurfaces);

    // Begins a seek to ring position 1-11, in place of one that the strip is at; any other target, and any strip but
    // 0-15, does nothing.
    void seek(int strip, int target);

    // One step, and the next one 35 ms later, until the target is reached, taken away or given up.
    void panSeekStep(Strip strip);

private:
    const Jobs& jobs;
    ReceiverState& state;
    Surfaces& surfaces;
    PerStrip<unsigned> seeksBegun{}; // a step that an earlier one has planned is not made
};

} // namespace lumbrine
