// Lines that a person types at the simulated Pro Tools: what its user would do with mouse and keys, and what may go
// wrong.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <string>
#include <string_view>

namespace lumbrine {

struct CommandAnswer {
    std::string text;  // for the person; may be empty, has no newline at its end
    bool done = true;  // false: nothing was done, and `text` says why
    bool quit = false; // the person wants to leave
};

// Tracks are told by their number in the session from 1, hidden ones counted too; values as in "fader 3 0.75". An empty
// line, and one that begins with '#', does nothing.
CommandAnswer runUserCommand(SimulatedProTools& proTools, std::string_view line);

// All commands with what they do, a line for each.
std::string userCommandHelp();

} // namespace lumbrine
