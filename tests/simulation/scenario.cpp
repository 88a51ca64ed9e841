#include "tests/simulation/scenario.h"

#include "tests/simulation/host_habits.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

template <typename Value, std::size_t count>
Value pick(SeededRandom& chance, const std::array<Value, count>& values) {
    return values[static_cast<std::size_t>(chance.below(count))];
}

void chooseReactions(SeededRandom& chance, SimulatorOptions& options) {
    // A scan takes a bank that has not answered within about 0.27 s for the last one.
    options.latency = chance.oneIn(12)
                          ? seconds(0.3)
                          : pick(chance, std::array{seconds(0), seconds(0.02), seconds(0.1), seconds(0.2)});
    options.hostTimeout = pick(chance, std::array{seconds(2), seconds(3), seconds(5)});
    options.pingWithoutSession = chance.oneIn(2);
    options.faderEcho = chance.oneIn(2) ? FaderEcho::whileTouched : FaderEcho::afterRelease;
    options.faderBits = pick(chance, std::array{9, 10, 14});
    options.groups = chance.oneIn(2);
    options.grabPortsAfter = pick(chance, std::array{seconds(0), seconds(0), seconds(0), seconds(4)});
    for (std::size_t i = options.dumpOrder.size(); i > 1; --i)
        std::swap(options.dumpOrder[i - 1], options.dumpOrder[chance.below(i)]);
}

void chooseDisplays(SeededRandom& chance, SimulatorOptions& options) {
    options.shortNames = pick(chance, std::array{ShortNameRule::cut, ShortNameRule::vowels, ShortNameRule::colliding});
    options.nonASCII = chance.oneIn(2) ? NonASCIIRule::blank : NonASCIIRule::questionMark;
    options.valueShownFor = chance.oneIn(25) ? seconds(3) : seconds(0.8);
    options.modeShown = pick(chance, std::array{seconds(0), seconds(1), seconds(1), seconds(3)});
    options.mainDisplay = chance.oneIn(3);
    options.counter = chance.oneIn(3);
    options.repeatZoneSelect = chance.oneIn(2);
    options.dialogFreezes = !chance.oneIn(25);
    options.autoLED = chance.oneIn(2) ? AutoLED::green24 : AutoLED::green34;
    options.ledOn = options.ledOff = pick(chance, std::array{seconds(0.25), seconds(0.5)});
    options.panPicture = pick(chance, std::array{RingPicture::dot, RingPicture::boostCut, RingPicture::spread});
    options.clicksPerRingPosition = pick(chance, std::array{1, 3, 9});
    options.meterRate = pick(chance, std::array{10, 20, 30});
}

void chooseBanking(SeededRandom& chance, SimulatorOptions& options) {
    options.endOfSession = chance.oneIn(2) ? EndOfSession::fill : EndOfSession::blank;
    options.bankLeftAligns = !chance.oneIn(3);
    options.bankRightAligns = chance.oneIn(3);
    options.redrawOnBank = chance.oneIn(2);
    options.bankWidth = chance.oneIn(2) ? BankWidth::answering : BankWidth::configured;
    options.dropOnePressIn = pick(chance, std::array{0, 0, 0, 0, 10, 40});
    options.restlessUserEvery = pick(chance, std::array{seconds(0), seconds(0), seconds(0.7), seconds(2)});
}

SimulatorOptions hostOptions(SeededRandom& chance, std::uint64_t seed) {
    SimulatorOptions options;
    options.seed = seed;
    options.surfaces = chance.oneIn(3) ? 1 : 2;
    chooseReactions(chance, options);
    chooseDisplays(chance, options);
    chooseBanking(chance, options);
    return options;
}

int trackCount(SeededRandom& chance) {
    if (chance.oneIn(12)) return pick(chance, std::array{120, 200, 400});
    return pick(chance, std::array{1, 7, 8, 9, 16, 17, 20, 20, 24, 30, 33, 40, 40, 50, 64});
}

// Each phone does some things and leaves others, so that some sessions are all about one thing.
std::array<int, actCount> chooseHabits(SeededRandom& chance) {
    constexpr auto onSurfaces = static_cast<std::size_t>(Act::setGroupSwitches); // the acts before
    std::array<int, actCount> habits{};
    for (std::size_t act = 0; act < onSurfaces; ++act)
        habits[act] = chance.oneIn(3) ? 0 : 1 + static_cast<int>(chance.below(3));
    habits[static_cast<std::size_t>(Act::playFader)] += 2;
    habits[static_cast<std::size_t>(Act::seekBank)] += 1;
    return habits;
}

Troubles chooseTroubles(SeededRandom& chance) {
    if (chance.oneIn(4)) return {};
    return {.surfacesVanish = chance.oneIn(3),
            .bothSurfacesFlap = chance.oneIn(4),
            .secondSurfaceLeaves = chance.oneIn(3),
            .hostSticks = chance.oneIn(4),
            .portsAreReleased = chance.oneIn(6),
            .userActs = chance.oneIn(3),
            .transport = chance.oneIn(2)};
}

// A host that does what it is asked to and nothing else, where it can be told exactly how everything has to end.
void soothe(SeededRandom& chance, Scenario& scenario) {
    scenario.namesDiffer = true;
    scenario.troubles = {.transport = chance.oneIn(3)};
    scenario.habits[static_cast<std::size_t>(Act::moveBank)] = 0;
    SimulatorOptions& host = scenario.host;
    host.latency = std::min(host.latency, seconds(0.2));
    host.modeShown = std::min(host.modeShown, seconds(1));
    host.bankLeftAligns = true;
    host.dropOnePressIn = 0;
    host.restlessUserEvery = Duration::zero();
}

// By a chance of its own, so that this changes nothing of what else a seed decides.
void chooseSources(std::uint64_t seed, Scenario& scenario) {
    SeededRandom chance(seed * 31 + 11);
    Troubles& troubles = scenario.troubles;
    scenario.sources.scripting = !chance.oneIn(3);
    scenario.sources.screen = !chance.oneIn(3);
    troubles.serviceFails = scenario.sources.scripting && chance.oneIn(2);
    troubles.screenFails = scenario.sources.screen && chance.oneIn(2);
    troubles.permissionGoes = scenario.sources.screen && chance.oneIn(3);
    troubles.commentsChange = scenario.sources.screen && chance.oneIn(2);

    scenario.host.scripting.downTime = pick(chance, std::array{seconds(2), seconds(6)});
    ScreenOptions& screen = scenario.host.screen;
    screen.japanese = chance.oneIn(2);
    screen.numbers = pick(chance, std::array{NameNumbers::none, NameNumbers::fullStop, NameNumbers::ideographic});
    screen.mixStrips = pick(chance, std::array{1000, 1000, 12});
    screen.furniture = pick(chance, std::array{0, 0, 30});
    // A list of all tracks that loses some of its rows can have as many as the surfaces show, and other ones.
    const bool listIsWhole = !troubles.screenFails && !troubles.permissionGoes && !troubles.hostSticks;
    screen.hiddenTracksListed = listIsWhole && chance.oneIn(3);
}

void chooseWishes(std::uint64_t seed, Scenario& scenario) {
    constexpr std::string_view name = "wishes-to-the-service";
    SeededRandom chance = chanceOf(seed, name);
    if (!scenario.switches.isOn(name) || chance.oneIn(2)) return;
    for (const Act act : {Act::setGroupSwitches, Act::toggleInputMonitor})
        scenario.habits[static_cast<std::size_t>(act)] = static_cast<int>(chance.below(4));
}

} // namespace

SeededRandom chanceOf(std::uint64_t seed, std::string_view name) {
    for (const char letter : name)
        seed = SeededRandom(seed ^ static_cast<unsigned char>(letter)).next();
    return SeededRandom(seed);
}

Scenario scenarioOf(std::uint64_t seed, const Switches& switches) {
    SeededRandom chance(seed);
    Scenario scenario;
    scenario.seed = seed;
    scenario.switches = switches;
    scenario.patience = chance.oneIn(16) ? 1 : pick(chance, std::array<std::uint64_t, 2>{16, 64});
    scenario.phones = 1 + static_cast<int>(chance.below(3));
    scenario.tracks = trackCount(chance);
    scenario.namesDiffer = chance.oneIn(2);
    scenario.host = hostOptions(chance, seed);
    if (!chance.oneIn(4))
        scenario.network = {.loss = pick(chance, std::array{0.0, 0.02, 0.2}),
                            .duplication = pick(chance, std::array{0.0, 0.05, 0.2}),
                            .latency = pick(chance, std::array{seconds(0.001), seconds(0.02)}),
                            .jitter = pick(chance, std::array{seconds(0), seconds(0.005), seconds(0.06)})};
    scenario.metersArrive = chance.oneIn(10);
    scenario.forger = chance.oneIn(3);
    scenario.habits = chooseHabits(chance);
    scenario.troubles = chooseTroubles(chance);
    if (chance.oneIn(3)) soothe(chance, scenario);
    chooseSources(seed, scenario);
    chooseWishes(seed, scenario);
    scenario.hardships = hardshipsOf(seed, switches);
    // Two who answer each other for ever do so a bounded number of times in a second, and do not become ever more.
    if (scenario.hardships.strangers()) {
        scenario.network.latency = seconds(0.02);
        scenario.network.duplication = 0;
    }
    if (scenario.hardships.datagramsStray) {
        scenario.network.straying = 0.02;
        scenario.network.detour = seconds(3);
    }
    scenario.hostHabits = chooseHostHabits(seed, switches, scenario.host);
    scenario.storms = switches.isOn("storms") && chanceOf(seed, "storms").oneIn(4);
    // Long enough for the first scan to end, and then some.
    const int banks = scenario.tracks / scenario.strips();
    scenario.trouble = seconds(18) + seconds(1) * std::min(banks, 30);
    return scenario;
}

bool Scenario::has(std::string_view hostHabit) const {
    return std::ranges::find(hostHabits, hostHabit) != hostHabits.end();
}

std::string Scenario::text() const {
    std::string habitNames;
    for (const std::string_view name : hostHabits)
        habitNames += ", " + std::string(name);
    const auto inWords = [](bool holds, const char* words) {
        return holds ? std::string(", ") + words : std::string();
    };
    return "seed " + std::to_string(seed) + ": " + std::to_string(phones) + " phones, " + std::to_string(tracks) +
           " tracks, " + std::to_string(host.surfaces) + " surfaces, host latency " +
           std::to_string(inSeconds(host.latency)) + " s, loss " + std::to_string(network.loss) + ", doubled " +
           std::to_string(network.duplication) + ", jitter " + std::to_string(inSeconds(network.jitter)) + " s" +
           inWords(namesDiffer, "names that differ") + inWords(forger, "a forger") +
           inWords(storms, "storms of commands") + inWords(host.endOfSession == EndOfSession::blank, "blank end") +
           inWords(!host.bankLeftAligns, "bank left does not align") +
           inWords(host.bankRightAligns, "bank right aligns") + inWords(host.dropOnePressIn > 0, "presses get lost") +
           inWords(host.restlessUserEvery > Duration::zero(), "a restless user") +
           inWords(troubles.surfacesVanish, "surfaces vanish") + inWords(troubles.bothSurfacesFlap, "surfaces flap") +
           inWords(troubles.secondSurfaceLeaves, "the second surface leaves") +
           inWords(troubles.hostSticks, "the host sticks") + inWords(troubles.portsAreReleased, "ports are released") +
           inWords(troubles.userActs, "the user acts") + inWords(troubles.transport, "the transport runs") +
           inWords(sources.scripting, "a scripting service") + inWords(sources.screen, "a screen to read") +
           inWords(host.screen.hiddenTracksListed, "which lists hidden tracks") +
           inWords(troubles.serviceFails, "the service fails") + inWords(troubles.screenFails, "the screen fails") +
           inWords(troubles.permissionGoes, "permission goes") + inWords(troubles.commentsChange, "comments change") +
           inWords(weight(Act::setGroupSwitches) + weight(Act::toggleInputMonitor) > 0, "wishes to the service") +
           hardships.text() + habitNames;
}

} // namespace lumbrine::simulation
