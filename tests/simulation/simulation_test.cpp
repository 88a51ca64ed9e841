// Seeded sessions: simulation_tests --seeds N runs seeds 1 to N, --seed N runs that one and tells about it.
#include "tests/simulation/checkers.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace lumbrine::simulation {
namespace {

std::uint64_t firstSeed = 1;
std::uint64_t lastSeed = 200;

TEST(Simulation, EverySeededSessionHoldsItsPromises) {
    Duration virtualTime = Duration::zero();
    const std::clock_t began = std::clock();
    for (std::uint64_t seed = firstSeed; seed <= lastSeed; ++seed) {
        const Scenario scenario = scenarioOf(seed);
        if (firstSeed == lastSeed) std::cout << scenario.text() << "\n";
        const Evidence evidence = runSession(scenario);
        virtualTime += evidence.virtualTime;
        const Violations violations = checkAll(scenario, evidence);
        if (violations.empty()) continue;
        std::string report =
            scenario.text() + "\n  replay: build/release/bin/simulation_tests --seed " + std::to_string(seed);
        for (std::size_t i = 0; i < std::min<std::size_t>(violations.size(), 5); ++i)
            report += "\n  " + violations[i];
        ADD_FAILURE() << report;
    }
    const double spent = static_cast<double>(std::clock() - began) / CLOCKS_PER_SEC;
    std::printf("%llu sessions, %.0f s of studio time, %.0f times real time on one core\n",
                static_cast<unsigned long long>(lastSeed - firstSeed + 1), inSeconds(virtualTime),
                inSeconds(virtualTime) / std::max(spent, 0.001));
}

TEST(Simulation, OneSeedGivesOneSession) {
    const Scenario scenario = scenarioOf(firstSeed);
    EXPECT_EQ(runSession(scenario).traceHash, runSession(scenario).traceHash);
}

void readArguments(int count, char** arguments) {
    for (int i = 1; i + 1 < count; ++i) {
        const std::string name = arguments[i];
        const std::uint64_t number = std::strtoull(arguments[i + 1], nullptr, 10);
        if (name == "--seeds") lastSeed = number;
        if (name == "--seed") firstSeed = lastSeed = number;
    }
}

} // namespace
} // namespace lumbrine::simulation

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    lumbrine::simulation::readArguments(count, arguments);
    return RUN_ALL_TESTS();
}
