// Commands that a person types at the demo: "reconnect" for the receiver, and the commands of the simulated Pro Tools.
#pragma once

#include "base/bilingual.h"
#include "simulator/simulated_pro_tools.h"

#include <functional>
#include <string>

namespace lumbrine {

// Main thread only. The simulated Pro Tools must outlive it.
class DemoConsole {
public:
    // Prints from now on what is pressed on Pro Tools' screen.
    DemoConsole(SimulatedProTools& proTools, std::function<void()> reconnect, std::function<void()> end,
                std::function<void(const std::string& line)> print, Bilingual text);

    // Prints the answer, or what was done.
    void handle(const std::string& line) const;

private:
    SimulatedProTools& proTools;
    const std::function<void()> reconnect;
    const std::function<void()> end;
    const std::function<void(const std::string&)> print;
    const Bilingual text;
};

// The help for the demo's own commands, one per line. The command "help" also lists those of the simulated Pro Tools.
std::string demoCommandHelp();

} // namespace lumbrine
