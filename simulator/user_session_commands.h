// The user's commands for sessions and dialogs.
#pragma once

#include "simulator/user_command_arguments.h"

namespace lumbrine::user_command {

inline constexpr std::string_view sessionUsage = "open|close|exchange TRACKS|template|save SECONDS";
inline constexpr std::string_view dialogUsage = "open TEXT|close";

Result session(SimulatedProTools& proTools, Arguments& arguments);
Result dialog(SimulatedProTools& proTools, Arguments& arguments);

} // namespace lumbrine::user_command
