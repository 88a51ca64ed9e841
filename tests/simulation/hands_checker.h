// What is down on the wires, by whose hand, and when it has to be up again.
#pragma once

#include "tests/simulation/job_watch.h"
#include "tests/simulation/name_gaps.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"
#include "tests/simulation/surface_wire.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

struct HandsEvidence {
    SurfaceActions wires; // without the faders that walks play
    Acceptance acceptance;
    std::vector<JobRun> runs;
    Pauses pauses = {};
    NameGaps gaps = {};
    TimePoint programEnd;
    TimePoint end; // of the record
};

struct HandsViolations {
    std::vector<std::string> ofClients; // touches and switches
    std::vector<std::string> ofAuto;    // AUTO switches and mode buttons
};

// No switch, touch, AUTO switch or mode button is down 0.1 s after its hand has gone: after the release; after the
// device in control was replaced by another; for a touch, after its client has been silent for as long as makes the
// receiver forget it; after the end of the program. None is down when the banks begin to move. And none of these ever
// lifts a hand that is still there, unless the strip got another name: what the new owner touched before anybody
// noticed the old one's end stays down.
HandsViolations checkHands(const HandsEvidence& evidence);

} // namespace lumbrine::simulation
