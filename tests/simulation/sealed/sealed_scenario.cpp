#include "tests/simulation/sealed/sealed_scenario.h"

#include "simulator/seeded_random.h"

#include <array>

namespace lumbrine::simulation {

SealedScenario sealedScenarioOf(std::uint64_t seed) {
    SeededRandom chance(seed * 13 + 7);
    const auto pick = [&](const auto& values) { return values[static_cast<std::size_t>(chance.below(values.size()))]; };
    SealedScenario scenario;
    scenario.seed = seed;
    scenario.patience = pick(std::array<std::uint64_t, 3>{4, 16, 64});
    scenario.phones = 1 + static_cast<int>(chance.below(3));
    scenario.network = {.loss = 0.2,
                        .duplication = pick(std::array{0.05, 0.2}),
                        .latency = pick(std::array{seconds(0.001), seconds(0.02)}),
                        .jitter = pick(std::array{seconds(0), seconds(0.005), seconds(0.06)}),
                        .straying = pick(std::array{0.02, 0.2}),
                        .detour = seconds(3)};
    scenario.phonesMove = chance.oneIn(3);
    scenario.phonesRestart = chance.oneIn(3);
    scenario.keyIsTakenAway = chance.oneIn(4);
    return scenario;
}

std::string SealedScenario::text() const {
    return "seed " + std::to_string(seed) + ": " + std::to_string(phones) + " phones, loss " +
           std::to_string(network.loss) + ", doubled " + std::to_string(network.duplication) + ", jitter " +
           std::to_string(inSeconds(network.jitter)) + " s, detours " + std::to_string(network.straying) +
           (phonesMove ? ", phones move" : "") + (phonesRestart ? ", phones restart" : "") +
           (keyIsTakenAway ? ", the key is taken away" : "");
}

} // namespace lumbrine::simulation
