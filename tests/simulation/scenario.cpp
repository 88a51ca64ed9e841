#include "tests/simulation/scenario.h"

#include "simulator/seeded_random.h"

#include <array>

namespace lumbrine::simulation {

namespace {

template <typename Value, std::size_t count>
Value pick(SeededRandom& chance, const std::array<Value, count>& values) {
    return values[static_cast<std::size_t>(chance.below(count))];
}

SimulatorOptions hostOptions(SeededRandom& chance, std::uint64_t seed) {
    SimulatorOptions options;
    options.seed = seed;
    options.surfaces = chance.oneIn(3) ? 1 : 2;
    // A scan takes a bank that has not answered within about 0.25 s for the last one, so no host here is slower.
    options.latency = pick(chance, std::array{seconds(0), seconds(0.02), seconds(0.1), seconds(0.2)});
    options.faderEcho = chance.oneIn(2) ? FaderEcho::whileTouched : FaderEcho::afterRelease;
    options.faderBits = pick(chance, std::array{9, 10, 14});
    options.shortNames = pick(chance, std::array{ShortNameRule::cut, ShortNameRule::vowels, ShortNameRule::colliding});
    options.nonASCII = chance.oneIn(2) ? NonASCIIRule::blank : NonASCIIRule::questionMark;
    options.repeatZoneSelect = chance.oneIn(2);
    options.pingWithoutSession = chance.oneIn(2);
    options.bankLeftAligns = chance.oneIn(2);
    options.endOfSession = chance.oneIn(2) ? EndOfSession::fill : EndOfSession::blank;
    options.redrawOnBank = chance.oneIn(2);
    options.bankWidth = chance.oneIn(2) ? BankWidth::answering : BankWidth::configured;
    options.meterRate = pick(chance, std::array{20, 30});
    options.grabPortsAfter = pick(chance, std::array{seconds(0), seconds(4)});
    return options;
}

} // namespace

Scenario scenarioOf(std::uint64_t seed) {
    SeededRandom chance(seed);
    Scenario scenario;
    scenario.seed = seed;
    scenario.phones = 1 + static_cast<int>(chance.below(3));
    scenario.tracks = pick(chance, std::array{1, 7, 8, 16, 20, 40});
    scenario.host = hostOptions(chance, seed);
    if (!chance.oneIn(4))
        scenario.network = {.loss = pick(chance, std::array{0.0, 0.02, 0.2}),
                            .duplication = pick(chance, std::array{0.0, 0.05, 0.2}),
                            .latency = pick(chance, std::array{seconds(0.001), seconds(0.02)}),
                            .jitter = pick(chance, std::array{seconds(0), seconds(0.005), seconds(0.06)})};
    scenario.forger = chance.oneIn(2);
    scenario.surfacesVanish = chance.oneIn(2);
    scenario.panSeeks = chance.oneIn(4);
    return scenario;
}

std::string Scenario::text() const {
    return "seed " + std::to_string(seed) + ": " + std::to_string(phones) + " phones, " + std::to_string(tracks) +
           " tracks, " + std::to_string(host.surfaces) + " surfaces, host latency " +
           std::to_string(inSeconds(host.latency)) + " s, loss " + std::to_string(network.loss) + ", doubled " +
           std::to_string(network.duplication) + ", jitter " + std::to_string(inSeconds(network.jitter)) + " s" +
           (forger ? ", a forger" : "") + (surfacesVanish ? ", surfaces vanish" : "") + (panSeeks ? ", pan seeks" : "");
}

} // namespace lumbrine::simulation
