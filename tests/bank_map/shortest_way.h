// How few presses lead from one offset of the surfaces to another without ever passing it, when bank buttons lead from
// one multiple of the width to the next: found by trying all ways, nearest places first.
#pragma once

#include "tests/bank_map/studio.h"

namespace lumbrine {

int fewestPresses(int from, int to, int width);

// Whether the presses are what a seek may make on a host of those options: the fewest that should lead to the target;
// then, from where these have really led, the fewest again, at most twice, and none once it is there.
testing::AssertionResult areStepsAndCorrections(const std::vector<Press>& presses, int from, int to,
                                                const SimulatorOptions& options, int tracks);

} // namespace lumbrine
