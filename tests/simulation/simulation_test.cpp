// Seeded sessions: simulation_tests --seeds N runs seeds 1 to N, --seed N runs that one and tells about it. --with NAME
// (or "all") switches on what is off in not_yet.h. --traces FOLDER runs no test and writes the sessions' traffic there.
#include "tests/simulation/checkers.h"
#include "tests/simulation/session_run.h"
#include "tests/simulation/summary.h"
#include "tests/simulation/trace.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <map>
#include <set>

namespace lumbrine::simulation {
namespace {

std::uint64_t firstSeed = 1;
std::uint64_t lastSeed = LUMBRINE_SIMULATED_SESSIONS;
Switches switches;
std::string switchArguments; // as they were given
std::string traceFolder;     // empty: no traces

std::string reportOf(const Scenario& scenario, const Violations& violations) {
    constexpr std::size_t most = 5;
    std::string report = scenario.text() + "\n  replay: build/release/bin/simulation_tests --seed " +
                         std::to_string(scenario.seed) + switchArguments;
    for (std::size_t i = 0; i < std::min(violations.size(), most); ++i)
        report += "\n  " + violations[i];
    if (violations.size() > most) report += "\n  and " + std::to_string(violations.size() - most) + " more";
    return report;
}

// The log of the receiver, and when which job had the surfaces.
void tellAbout(const Scenario& scenario, const JobRecord& jobs) {
    std::cout << scenario.text() << "\n";
    std::multimap<TimePoint, std::string> lines(jobs.lines.begin(), jobs.lines.end());
    for (const JobRun& run : jobs.runs) {
        lines.emplace(run.first, nameOf(run.job) + " begins, the host at " + std::to_string(run.hostAtFirst.offset));
        lines.emplace(run.last, nameOf(run.job) + " ends, the host at " + std::to_string(run.hostAfter.offset));
    }
    for (const auto& [at, line] : lines)
        std::printf("%9.3f  %s\n", inSeconds(at.time_since_epoch()), line.c_str());
}

// How many sessions each checker found something in.
class Tally {
public:
    void add(const Violations& violations) {
        std::set<std::string> names;
        for (const std::string& violation : violations)
            names.insert(violation.substr(0, violation.find(':')));
        for (const std::string& name : names)
            ++sessions[name];
    }

    std::string text() const {
        std::string lines;
        for (const auto& [name, count] : sessions)
            lines += name + " finds something in " + std::to_string(count) + " sessions\n";
        return lines;
    }

private:
    std::map<std::string, int> sessions;
};

TEST(Simulation, EverySeededSessionHoldsItsPromises) {
    Summary summary;
    Tally tally;
    const std::clock_t began = std::clock();
    for (std::uint64_t seed = firstSeed; seed <= lastSeed; ++seed) {
        const Scenario scenario = scenarioOf(seed, switches);
        const Evidence evidence = runSession(scenario);
        if (firstSeed == lastSeed) tellAbout(scenario, evidence.jobs);
        summary.add(seed, evidence);
        const Violations violations = checkAll(scenario, evidence);
        tally.add(violations);
        if (!violations.empty()) ADD_FAILURE() << reportOf(scenario, violations);
    }
    std::cout << summary.text(seconds(static_cast<double>(std::clock() - began) / CLOCKS_PER_SEC)) << tally.text();
}

TEST(Simulation, OneSeedGivesOneSession) {
    const Scenario scenario = scenarioOf(firstSeed, switches);
    EXPECT_EQ(runSession(scenario).traceHash, runSession(scenario).traceHash);
}

// False when there is an argument that nobody knows.
bool readArguments(int count, char** arguments) {
    for (int i = 1; i < count; i += 2) {
        const std::string name = arguments[i];
        const std::string value = i + 1 < count ? arguments[i + 1] : "";
        const std::uint64_t number = std::strtoull(value.c_str(), nullptr, 10);
        if (name == "--seeds" && number > 0) {
            lastSeed = number;
        } else if (name == "--seed" && number > 0) {
            firstSeed = lastSeed = number;
        } else if (name == "--with" && switches.switchOn(value)) {
            switchArguments += " --with " + value;
        } else if (name == "--traces" && !value.empty()) {
            traceFolder = value;
        } else {
            std::cerr << "simulation_tests: cannot do \"" << name << " " << value << "\"\n";
            return false;
        }
    }
    return true;
}

int run() {
    if (traceFolder.empty()) return RUN_ALL_TESTS();
    if (writeTraces(traceFolder, firstSeed, lastSeed, switches)) return 0;
    std::cerr << "simulation_tests: cannot write to " << traceFolder << "\n";
    return 1;
}

} // namespace
} // namespace lumbrine::simulation

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    if (!lumbrine::simulation::readArguments(count, arguments)) return 2;
    return lumbrine::simulation::run();
}
