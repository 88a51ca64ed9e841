// Nothing is lost without a word: a command that is not carried out is told in the log.
//
// Judged are commands whose client was shown what they are for, of an owner that stays, on a host that nothing
// disturbs, and only the newest of one kind for one thing. One line stands for a run of drops.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/scenario.h"
#include "tests/simulation/shown_tracks.h"
#include "tests/simulation/surface_wire.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// A line that says that something was dropped, aborted or cancelled; a scan is nobody's command unless it says so.
bool tellsOfADrop(const std::string& line);

// Of automation modes, walks, wishes to the scripting service, and seeks and taps that meet a scan or a walk.
std::vector<std::string> checkDropsAreTold(const Scenario& scenario, const Evidence& evidence, const ShownTracks& shown,
                                           const Acceptance& acceptance, const Requests& requests);

} // namespace lumbrine::simulation
