// The fewest presses from one offset of the surfaces to another that never go past the target, by the host's bank
// buttons. Found by a breadth-first search of all ways.
#pragma once

#include "tests/studio/studio.h"

namespace lumbrine {

struct BankButtons {
    int width = stripsPerSurface;
    bool leftAligns = true; // to multiples of the width
    bool rightAligns = true;
};

int fewestPresses(int from, int to, BankButtons buttons);

} // namespace lumbrine
