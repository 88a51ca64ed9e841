// The simulated screen as real windows and menus of a Mac, for programs that read and press them by Accessibility.
#pragma once

#include "simulator/screen_outline.h"
#include "simulator/simulated_pro_tools.h"

#include <memory>

namespace lumbrine {

// A window stays the same, and so does each element in it, as long as what it shows exists. Presses reach the simulated
// screen, by Accessibility and by the mouse. While the program is stuck, nothing changes. Main thread.
class ScreenWindows {
public:
    explicit ScreenWindows(SimulatedProTools& proTools);
    ~ScreenWindows();
    ScreenWindows(const ScreenWindows&) = delete;
    ScreenWindows& operator=(const ScreenWindows&) = delete;

    // Makes windows and menus show what the simulated screen shows now.
    void look();

private:
    struct Parts;

    SimulatedProTools& proTools;
    const std::unique_ptr<Parts> parts;
    ScreenNode shown;
};

} // namespace lumbrine
