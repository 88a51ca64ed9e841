// The input and output of lumbrine-simulator: prints the status, and runs the commands that a person types.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <functional>
#include <string>
#include <string_view>

namespace lumbrine {

// On a terminal the last line always shows the status and is overwritten; elsewhere each change of the status is
// printed as a new line. Use it from one thread only.
class SimulatorShell {
public:
    // `print` gets text as it is to appear. The simulated Pro Tools outlives the shell.
    SimulatorShell(SimulatedProTools& proTools, bool terminal, std::function<void(std::string_view)> print);

    // How often `tick` must be called: once a second on a terminal; elsewhere every 0.1 s, so that a log has most
    // changes.
    Duration tickInterval() const { return terminal ? seconds(1) : seconds(0.1); }
    void tick();

    // Runs one typed command. False if it was the command to quit.
    bool handle(std::string_view line);

    // Moves the terminal's cursor to a new line, for the shell's prompt.
    void end();

private:
    void say(const std::string& text);

    SimulatedProTools& proTools;
    const bool terminal;
    const std::function<void(std::string_view)> print;
    std::string shown; // the status that was printed last
};

} // namespace lumbrine
