// What lumbrine-simulator prints and what it does with the lines that a person types.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <functional>
#include <string>
#include <string_view>

namespace lumbrine {

// On a terminal the status stays in the last line and is written over; elsewhere each change of it is a line of its
// own. One thread.
class SimulatorShell {
public:
    // `print` gets text as it is to appear. The simulated Pro Tools outlives the shell.
    SimulatorShell(SimulatedProTools& simulated, bool onTerminal, std::function<void(std::string_view)> printer);

    // How often `tick` is to be called: once a second on a terminal, else often enough to miss little.
    Duration tickInterval() const { return terminal ? seconds(1) : seconds(0.1); }
    void tick();

    // False when the person wants to leave.
    bool handle(std::string_view line);

    // Leaves the terminal with the cursor on a fresh line.
    void end();

private:
    void say(const std::string& text);

    SimulatedProTools& proTools;
    const bool terminal;
    const std::function<void(std::string_view)> print;
    std::string shown; // the status as it stands
};

} // namespace lumbrine
