// What the command line of replay_tests asks for.
#pragma once

#include <cstdint>

namespace lumbrine::simulation {

struct ReplayArguments {
    std::uint64_t firstSeed = 1;
    std::uint64_t lastSeed = LUMBRINE_TAPED_SESSIONS;
};

const ReplayArguments& replayArguments();

} // namespace lumbrine::simulation
