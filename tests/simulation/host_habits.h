// What only some hosts do, and what only some users of hosts do, each by a name.
#pragma once

#include "simulator/seeded_random.h"
#include "simulator/simulator_options.h"
#include "tests/simulation/not_yet.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace lumbrine::simulation {

struct HostHabit {
    std::string_view name;
    std::uint64_t oneIn;                                             // sessions have it
    void (*choose)(SeededRandom& chance, SimulatorOptions& options); // null where the options have nothing of it
};

const std::vector<HostHabit>& hostHabits();

// Chooses by a chance for each name, so that switching one on or off changes nothing else that a seed decides, and
// gives the names of those that the session has.
std::vector<std::string_view> chooseHostHabits(std::uint64_t seed, const Switches& switches, SimulatorOptions& options);

} // namespace lumbrine::simulation
