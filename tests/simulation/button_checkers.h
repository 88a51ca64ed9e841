// Which buttons may be pressed besides those of the strips that a client presses: bank and channel buttons, AUTO
// switches and mode buttons, and the assignment of the V-Pots, each for its own reasons.
#pragma once

#include "tests/simulation/job_watch.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/surface_wire.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// Nothing but the buttons below, and the strips' own that a client presses.
std::vector<std::string> checkZones(const SurfaceActions& wires);

// Bank and channel buttons are pressed on surface A, for 30 ms, by a job; those of a tap are what clients asked for.
std::vector<std::string> checkBankButtons(const SurfaceActions& wires, const std::vector<JobRun>& runs,
                                          const Requests& requests, const Pauses& pauses = {});

// The V-Pots' assignment changes when a client asks for the other side, at once, and when a surface appears.
std::vector<std::string> checkAssignment(const SurfaceActions& wires, const Requests& requests,
                                         const Pauses& pauses = {});

// One held AUTO switch at a time, for as long as its purpose takes, and for one of four: a client sets a mode, each at
// most once and within 2 s, where it may be given up before the mode button is pressed; a walk sets modes; a walk looks
// at a range; or the receiver asks a strip by itself. That it does only while nobody moves the banks, nothing plays,
// and no hand of a client's is on any fader. What is for a client is held shorter when another device takes control.
// `wires` without what walks play.
std::vector<std::string> checkAutomation(const SurfaceActions& wires, const JobRecord& jobs, const Requests& requests,
                                         const Acceptance& acceptance, const Pauses& pauses = {});

} // namespace lumbrine::simulation
