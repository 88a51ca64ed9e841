// Commands typed at the simulated Pro Tools: the actions of its user with mouse and keys, and faults.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <string>
#include <string_view>

namespace lumbrine {

struct CommandAnswer {
    std::string text;  // for the user, without a newline at the end; may be empty
    bool done = true;  // false when nothing was done; then `text` says why
    bool quit = false; // the user wants to end the program
};

// Runs one command, such as "fader 3 0.75". A track is its number in the session from 1, hidden tracks included. An
// empty line and a line that begins with '#' do nothing.
CommandAnswer runUserCommand(SimulatedProTools& proTools, std::string_view line);

// A line for each command.
std::string userCommandHelp();

} // namespace lumbrine
