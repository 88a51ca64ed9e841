// What the simulated Pro Tools shows at the moment, in one line for a person.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <string>

namespace lumbrine {

// "A on, B off | 1-16 of 38 | playing 0:12 | scripting on 31416 | Kick Snar ...": a surface is on while it answers, off
// while its ports are there and it does not answer, gone without them. Scripting is told with its port while its
// service is offered. A touched strip is marked with a star. Without `position` the time is left out, so that the line
// changes only when something happens.
std::string statusLine(const SimulatorSnapshot& snapshot, bool position);

} // namespace lumbrine
