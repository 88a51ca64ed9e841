// Simulated sessions as recordings.
#pragma once

#include "base/bytes.h"
#include "tests/simulation/scenario.h"

namespace lumbrine::simulation {

// The scenario of a seed without what no recording shows: threads that are interrupted anywhere or pause, a main thread
// that stalls, and a computer that sleeps.
Scenario tapedScenario(std::uint64_t seed);

// Everything from the receiver's start until calm has returned, as a file: no longer than its records are.
Bytes tapeOf(const Scenario& scenario);

} // namespace lumbrine::simulation
