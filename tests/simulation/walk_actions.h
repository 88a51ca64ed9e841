// What a walk plays on a surface by itself: a fader touched, moved and let go 30 ms later.
#pragma once

#include "tests/simulation/job_watch.h"
#include "tests/simulation/pauses.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/surface_wire.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

struct WalkedFader {
    TimePoint at;
    int strip = 0; // 0-15
    int value = 0; // 0-16383
};

struct SplitWire {
    std::vector<WireAction> ofClient; // all that is left, in its order
    std::vector<WalkedFader> ofWalks;
};

// `asked`: what the client asked of this surface directly. What walks play is found while one may have been under way.
SplitWire splitWire(const std::vector<WireAction>& wire, const std::vector<WireAction>& asked,
                    const std::vector<JobRun>& runs, int surface, const Pauses& pauses = {});

// Each was asked for by the device in control, once.
std::vector<std::string> checkWalkedFaders(const std::vector<WalkedFader>& walked, const Requests& requests);

} // namespace lumbrine::simulation
