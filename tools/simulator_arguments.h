// The command line of lumbrine-simulator.
#pragma once

#include "simulator/default_session.h"
#include "simulator/simulator_options.h"

#include <expected>
#include <span>
#include <string>

namespace lumbrine {

struct SimulatorArguments {
    int tracks = 24; // 0-1000
    SessionStyle style;
    bool scripting = true;               // whether to start the scripting service
    std::uint16_t scriptingPort = 31416; // TCP port; 0: any free port
    SimulatorOptions options;
};

// What the program prints instead of starting, and its exit status, if the command line asks for help or the version,
// or is wrong.
struct SimulatorArgumentsAnswer {
    std::string output; // to standard output: help or version
    std::string error;  // to standard error
    int status;         // 0, or 2 for a wrong command line
};

// `arguments` are those after the program's name.
std::expected<SimulatorArguments, SimulatorArgumentsAnswer>
readSimulatorArguments(std::span<const char* const> arguments);

} // namespace lumbrine
