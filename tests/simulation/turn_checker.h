// V-Pots turn because a client turns them, or because it asked for a pan position and the receiver is on its way there.
#pragma once

#include "tests/simulation/pauses.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/surface_wire.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

// `asked`: the turns that the client asked of this surface itself; each is on the wire at its moment. All others are
// single clicks within the 41 steps of 35 ms of a pan seek.
std::vector<std::string> checkTurns(const std::vector<WireAction>& wire, const std::vector<WireAction>& asked,
                                    const Requests& requests, int surface, const Pauses& pauses = {});

} // namespace lumbrine::simulation
