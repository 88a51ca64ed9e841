// The state of the simulated Pro Tools as one line for people.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <string>

namespace lumbrine {

// "A on, B off | 1-16 of 38 | playing 0:12 | scripting on 31416 | Kick Snar ...". A surface is "on" while it answers,
// "off" while its ports exist and it does not answer, and "gone" without ports. A touched strip is marked with a star.
// Without `position`, the time is left out, so that the line changes only when something happens.
std::string statusLine(const SimulatorSnapshot& snapshot, bool position);

} // namespace lumbrine
