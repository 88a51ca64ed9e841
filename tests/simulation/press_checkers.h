// Presses of the strips' switches and turns of their V-Pots: what may wait for a job to give the surfaces back.
#pragma once

#include "tests/simulation/closings.h"
#include "tests/simulation/name_gaps.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/surface_wire.h"

#include <string>
#include <utility>
#include <vector>

namespace lumbrine::simulation {

using LogLines = std::vector<std::pair<TimePoint, std::string>>;

// Presses of select, mute, solo and record are those that the device in control asked for: each one, once, on its
// strip, at the moment its datagram came. One that may have met a job goes out within 1 s, on whichever strip (which
// one, checkActs judges), or a line in the log says that something was dropped; so does one on a strip whose name its
// client may not have been told. None goes out while a job has the surfaces. `wires` without what walks play.
std::vector<std::string> checkPresses(const SurfaceActions& wires, const Acceptance& acceptance,
                                      const Closings& closings, const LogLines& lines, const Pauses& pauses = {},
                                      const NameGaps& gaps = {});

// The same of turns. Beside them there are single clicks, on the strip of a pan seek, for as long as one takes.
std::vector<std::string> checkTurns(const SurfaceActions& wires, const Acceptance& acceptance, const Requests& requests,
                                    const Closings& closings, const LogLines& lines, const Pauses& pauses = {},
                                    const NameGaps& gaps = {});

// Each press of a strip's switch is let go 60 ms later, or when a job takes the surfaces before.
std::vector<std::string> checkPressesEnd(const std::vector<WireAction>& wire, const Closings& closings,
                                         const Pauses& pauses = {});

} // namespace lumbrine::simulation
