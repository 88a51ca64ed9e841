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
    bool scripting = true;               // the scripting service is offered
    std::uint16_t scriptingPort = 31416; // 0 for any that is free
    SimulatorOptions options;
};

// What a command line that asks for something else, or is wrong, has the program print, and the exit status.
struct SimulatorArgumentsAnswer {
    std::string output; // for standard output: help or version
    std::string error;  // for standard error
    int status;         // 0, or 2 for a command line that is not understood
};

// `arguments` are those behind the program's name.
std::expected<SimulatorArguments, SimulatorArgumentsAnswer>
readSimulatorArguments(std::span<const char* const> arguments);

} // namespace lumbrine
