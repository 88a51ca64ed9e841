// Everything about one simulated session that its seed decides.
#pragma once

#include "platform/virtual/virtual_network.h"
#include "simulator/simulator_options.h"

#include <cstdint>
#include <string>

namespace lumbrine::simulation {

struct Scenario {
    std::uint64_t seed = 1;
    int phones = 1; // 1-3
    int tracks = 16;
    SimulatorOptions host;
    VirtualNetwork::Faults network;
    bool forger = false;         // somebody on the network sends what is not its to send
    bool surfacesVanish = false; // the host's surfaces fall silent now and then, and come back
    bool panSeeks = false;       // phones also ask for pan positions
    Duration trouble = seconds(30);

    std::string text() const; // one line
};

Scenario scenarioOf(std::uint64_t seed);

} // namespace lumbrine::simulation
