// The user's commands for tracks, one function for each.
#pragma once

#include "simulator/user_command_arguments.h"

namespace lumbrine::user_command {

Result rename(SimulatedProTools& proTools, Arguments& arguments);
Result comment(SimulatedProTools& proTools, Arguments& arguments);
Result add(SimulatedProTools& proTools, Arguments& arguments);
Result insert(SimulatedProTools& proTools, Arguments& arguments);
Result remove(SimulatedProTools& proTools, Arguments& arguments);
Result move(SimulatedProTools& proTools, Arguments& arguments);
Result select(SimulatedProTools& proTools, Arguments& arguments);
Result fader(SimulatedProTools& proTools, Arguments& arguments);
Result pan(SimulatedProTools& proTools, Arguments& arguments);
Result automation(SimulatedProTools& proTools, Arguments& arguments);
Result color(SimulatedProTools& proTools, Arguments& arguments);
Result fold(SimulatedProTools& proTools, Arguments& arguments);
Result list(SimulatedProTools& proTools, Arguments& arguments);
Result toggle(SimulatedProTools& proTools, Arguments& arguments, bool SimulatedTrack::* flag);

} // namespace lumbrine::user_command
