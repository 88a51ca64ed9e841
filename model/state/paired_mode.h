// Who is let in.
#pragma once

namespace lumbrine {

struct PairedMode {
    bool onlyPaired = false; // only clients with a key
    bool isFixed = false;    // LUMBRINE_CLIENTS decides
};

} // namespace lumbrine
