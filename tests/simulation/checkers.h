// What must hold of every session, judged from its evidence alone. Each checker returns what it found wrong, in words.
// What is due at a moment may be as late as threads stood still meanwhile, where a checker knows of pauses.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/scenario.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

using Violations = std::vector<std::string>;

// After a hello on a quiet line the client's picture is the receiver's, and the receiver's is the host's.
Violations checkPicture(const Scenario& scenario, const Evidence& evidence);

// All of them and those of the other headers that are switched on, on every surface, and that every sequence on the
// wires is whole. Each violation begins with its checker's name.
Violations checkAll(const Scenario& scenario, const Evidence& evidence);

} // namespace lumbrine::simulation
