// Soon, or not at all: when what a client asked for may be carried out, and for whom.
#pragma once

#include "simulator/simulated_scripting.h"
#include "tests/simulation/job_watch.h"
#include "tests/simulation/name_gaps.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/surface_wire.h"
#include "tests/simulation/walk_actions.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// A mode is set within 2 s of its command, within 1 s of time in which nobody else has the surfaces, and only while its
// client is in control. A mode that could be set is set, unless the host was disturbed meanwhile.
std::vector<std::string> checkModesInTime(const SurfaceActions& wires, const JobRecord& jobs, const Requests& requests,
                                          const Acceptance& acceptance, const std::vector<Stretch>& disturbances,
                                          const Pauses& pauses = {}, const NameGaps& gaps = {});

// A walk begins within 10 s of a command for it, while the client that sent it is in control; no other one follows from
// that command. When its client is replaced under way, it asks, sets and plays nothing more.
std::vector<std::string> checkWalksInTime(const SurfaceActions& wires, const std::vector<WalkedFader>& walked,
                                          const JobRecord& jobs, const Requests& requests, const Acceptance& acceptance,
                                          const Pauses& pauses = {});

// The scripting service is asked to switch something within 3 s of a command for it, while its client is in control.
std::vector<std::string> checkSettersInTime(const std::vector<ScriptingSetter>& setters, const Requests& requests,
                                            const Acceptance& acceptance, const Pauses& pauses = {});

} // namespace lumbrine::simulation
