// What fingers on faders ask for goes out, and goes to nobody else.
#pragma once

#include "tests/simulation/closings.h"
#include "tests/simulation/name_gaps.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"
#include "tests/simulation/surface_wire.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// Fader moves and touches on a surface are those that the device in control asked for: each one, once, in its order, at
// the moment its datagram came; and so are its releases, beside which there may be others (checkHands). What another
// device sends causes nothing.
//
// But nothing goes out while a job has the surfaces; and a finger that was on a fader when one took them, or was put
// there meanwhile, moves nothing more until it touches again, another device is in control, or its client has been
// silent for so long that its touches are forgotten. The repeated touch of a resting finger is no new one.
//
// The same holds for one strip while its client may not have been told its name, and after it got another one.
//
// `wire` without what walks play.
std::vector<std::string> checkFingers(const std::vector<WireAction>& wire, int surface, const Acceptance& acceptance,
                                      const Closings& closings, const Pauses& pauses = {}, const NameGaps& gaps = {});

} // namespace lumbrine::simulation
