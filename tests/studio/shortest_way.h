// The fewest presses from one offset of the surfaces to another that never go past the target, on a host whose bank
// buttons move between multiples of the width. Found by a breadth-first search of all ways.
#pragma once

#include "tests/studio/studio.h"

namespace lumbrine {

int fewestPresses(int from, int to, int width);

// Checks that a seek on a host with these options may make these presses: first the fewest that should lead to the
// target; then up to two corrections, each with the fewest presses from the offset really reached; none at the target.
testing::AssertionResult areStepsAndCorrections(const std::vector<Press>& presses, int from, int to,
                                                const SimulatorOptions& options, int tracks);

} // namespace lumbrine
