// What must hold of the jobs that move the surfaces: why they begin, how long they last, and where they leave the
// surfaces when the host does what a host does and nobody interferes.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/scenario.h"
#include "tests/simulation/surface_wire.h"
#include "tests/simulation/walk_actions.h"

#include <optional>
#include <string>
#include <vector>

namespace lumbrine::simulation {

// A seek and a tap begin within a second of a client's request, a walk for one, a scan within ten seconds of one or by
// the clock: at a tick, at a hello, or two seconds after a scan; or as soon as what it had to wait for is over. None
// but seeks, taps and group faders begins while the transport runs.
std::vector<std::string> checkBeginnings(const Evidence& evidence, const SurfaceActions& wires,
                                         const Acceptance& acceptance, const Requests& requests,
                                         const Pauses& pauses = {});

// No scan or walk begins under a finger, or less than 1.5 s after a fader was moved. `wires` without what walks play.
std::vector<std::string> checkHandsRest(const std::vector<JobRun>& runs, const SurfaceActions& wires,
                                        const Acceptance& acceptance, const Pauses& pauses = {});

// How long a job lasted, as far as a limit counts it: a seek from the last target on.
Duration lengthOf(const JobRun& run, const Requests& requests);

// Each ends within its limit (time_limits.h).
std::vector<std::string> checkLengths(const JobRecord& jobs, const Requests& requests, const Pauses& pauses = {});

// A bank offset that is known is true, as soon as the host has had the time to show where it is.
std::vector<std::string> checkPositions(const Evidence& evidence);

// On a plain host that nothing disturbs: a walk leaves the surfaces where they were, and its faders are those of its
// members.
std::vector<std::string> checkPlaces(const Scenario& scenario, const Evidence& evidence, const Requests& requests,
                                     const std::vector<WalkedFader>& walked);

// What a walk was, by the line it wrote in the end; none while it lasts.
std::optional<WalkRequest::Kind> kindOf(const JobRun& walk, const JobRecord& jobs);

} // namespace lumbrine::simulation
