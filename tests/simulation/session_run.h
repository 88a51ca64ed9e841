// One session in virtual time, from its start to its quiet end.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/scenario.h"
#include "tests/simulation/trace.h"

namespace lumbrine::simulation {

// What crosses the wires is noted in the trace, where there is one.
Evidence runSession(const Scenario& scenario, Trace* trace = nullptr);

} // namespace lumbrine::simulation
