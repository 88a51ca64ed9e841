// What a person types at the demo: the receiver's reconnect action, and what the user of the simulated Pro Tools may
// do.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <functional>
#include <string>

namespace lumbrine {

// Main thread only. The simulated Pro Tools outlives it.
class DemoConsole {
public:
    // Prints from now on what is pressed on Pro Tools' screen.
    DemoConsole(SimulatedProTools& simulated, std::function<void()> reconnectAction, std::function<void()> endAction,
                std::function<void(const std::string& line)> printer);

    void handle(const std::string& line) const;

private:
    SimulatedProTools& proTools;
    const std::function<void()> reconnect;
    const std::function<void()> end;
    const std::function<void(const std::string&)> print;
};

// The demo's own commands with what they do, a line for each; "help" lists the others too.
std::string demoCommandHelp();

} // namespace lumbrine
