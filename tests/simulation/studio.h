// One session in virtual time, from its start to its quiet end.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/scenario.h"

namespace lumbrine::simulation {

Evidence runSession(const Scenario& scenario);

} // namespace lumbrine::simulation
