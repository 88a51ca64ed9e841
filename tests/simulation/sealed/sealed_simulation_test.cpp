// Seeded sessions of clients with a key: sealed_simulation_tests --seeds N runs seeds 1 to N, --seed N runs that one.
#include "tests/simulation/sealed/sealed_checkers.h"
#include "tests/simulation/sealed/sealed_session.h"

#include <cstdlib>
#include <iostream>

namespace lumbrine::simulation {
namespace {

std::uint64_t firstSeed = 1;
std::uint64_t lastSeed = LUMBRINE_SIMULATED_SESSIONS;

std::string reportOf(const SealedScenario& scenario, const Violations& violations) {
    constexpr std::size_t most = 5;
    std::string report = scenario.text() + "\n  replay: build/release/bin/sealed_simulation_tests --seed " +
                         std::to_string(scenario.seed);
    for (std::size_t i = 0; i < std::min(violations.size(), most); ++i)
        report += "\n  " + violations[i];
    if (violations.size() > most) report += "\n  and " + std::to_string(violations.size() - most) + " more";
    return report;
}

TEST(SealedSimulation, LetsNobodyInWithoutAKeyAndTheNetworkDisturbNobody) {
    std::size_t made = 0;
    std::size_t packets = 0;
    long long forgeries = 0;
    for (std::uint64_t seed = firstSeed; seed <= lastSeed; ++seed) {
        const SealedScenario scenario = sealedScenarioOf(seed);
        const SealedEvidence evidence = runSealedSession(scenario);
        made += evidence.made.size();
        forgeries += evidence.forgeries;
        for (const auto& surface : evidence.surfaces)
            packets += surface.size();
        const Violations violations = checkSealed(evidence);
        if (!violations.empty()) ADD_FAILURE() << reportOf(scenario, violations);
    }
    std::cout << "of phones " << made << " datagrams, forged " << forgeries << "; Pro Tools got " << packets
              << " packets\n";
}

// False when there is an argument that nobody knows.
bool readArguments(int count, char** arguments) {
    for (int i = 1; i < count; i += 2) {
        const std::string name = arguments[i];
        const std::uint64_t number = std::strtoull(i + 1 < count ? arguments[i + 1] : "", nullptr, 10);
        if (number == 0 || (name != "--seeds" && name != "--seed")) {
            std::cerr << "sealed_simulation_tests: cannot do \"" << name << "\"\n";
            return false;
        }
        lastSeed = number;
        if (name == "--seed") firstSeed = number;
    }
    return true;
}

} // namespace
} // namespace lumbrine::simulation

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    if (!lumbrine::simulation::readArguments(count, arguments)) return 2;
    return RUN_ALL_TESTS();
}
