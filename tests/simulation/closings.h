// When jobs that move the banks had the surfaces, so that they were closed to the client's hands.
//
// The watch sees beginnings and ends only to the next look, and a thread that stood still decided earlier than it
// acted. So there are times at which the surfaces surely were closed, and times at which they may have been.
#pragma once

#include "tests/simulation/job_watch.h"
#include "tests/simulation/pauses.h"

#include <vector>

namespace lumbrine::simulation {

class Closings {
public:
    // All outlive it.
    Closings(const std::vector<JobRun>& jobRuns, const Pauses& ofThreads);

    // What came at that time may have found them closed.
    bool mayMeet(TimePoint came) const;

    // What went out at that time went out of closed surfaces.
    bool surelyWas(TimePoint sent) const;

    // Another job may have closed them after the first time, before what came at the second was carried out.
    bool mayHaveBegun(TimePoint since, TimePoint came) const;

    // What went out at that time may be of a job that took the surfaces.
    bool mayBeginAt(TimePoint sent) const;

    // Another job surely closed them between what went out and what went out later.
    bool surelyBegan(TimePoint sent, TimePoint later) const;

private:
    const std::vector<JobRun>& runs;
    const Pauses& pauses;
};

} // namespace lumbrine::simulation
