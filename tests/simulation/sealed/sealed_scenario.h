// Everything about one simulated session of sealing clients that its seed decides.
#pragma once

#include "platform/virtual/virtual_network.h"

#include <cstdint>
#include <string>

namespace lumbrine::simulation {

struct SealedScenario {
    std::uint64_t seed = 1;
    std::uint64_t patience = 1; // of the threads, see VirtualRuntime::Options
    int phones = 1;             // 1-3
    VirtualNetwork::Faults network;
    bool phonesMove = false;     // to another address
    bool phonesRestart = false;  // and know nothing of their last session
    bool keyIsTakenAway = false; // in mid-drag, and given back
    Duration trouble = seconds(20);

    // Only tests of the checkers have it otherwise.
    bool onlyPaired = true;
    bool phonesSeal = true;
    bool eavesdropper = true;

    std::string text() const; // one line
};

SealedScenario sealedScenarioOf(std::uint64_t seed);

} // namespace lumbrine::simulation
