// What recordings of simulated hosts tell about them is how they were set.
#include "tests/replay/replay_arguments.h"
#include "tests/replay/taped_session.h"
#include "tools/blackbox/facts.h"

namespace lumbrine::simulation {
namespace {

using Answers = std::map<std::string, std::string>;

std::string inOrder(const std::vector<DumpPart>& parts) {
    static const std::map<DumpPart, std::string> names{{DumpPart::displays, "displays"},
                                                       {DumpPart::faders, "faders"},
                                                       {DumpPart::rings, "rings"},
                                                       {DumpPart::stripLEDs, "strip LEDs"}};
    std::string text;
    for (const DumpPart part : parts)
        if (const auto name = names.find(part); name != names.end()) text += (text.empty() ? "" : ", ") + name->second;
    return text;
}

Answers settingsOf(const SimulatorOptions& host) {
    const auto way = [](bool aligns) { return aligns ? "to a multiple of the width" : "by the width"; };
    const std::array<const char*, 3> names{"the first four characters", "small vowels are dropped",
                                           "numbers and sides at the end are dropped"};
    return {{"bank left", way(host.bankLeftAligns)},
            {"bank right", way(host.bankRightAligns)},
            {"last bank", host.endOfSession == EndOfSession::fill ? "filled" : "with blank strips"},
            {"short names", names.at(static_cast<std::size_t>(host.shortNames))},
            {"order of a dump", inOrder(host.dumpOrder)},
            {"messages in a packet", host.packets.messagesPerPacket > 1 || host.runningStatus ? "several" : "one"},
            {"running status", host.runningStatus ? "used" : "not used"},
            {"displays in a SysEx", host.displaysPerSysEx > 1 ? "up to " + std::to_string(host.displaysPerSysEx) : "1"},
            {"zone select", host.repeatZoneSelect ? "before each port" : "once for several ports"},
            {"AUTO LED of Read", host.autoLED == AutoLED::green24 ? "24" : "34"}};
}

struct Count {
    int right = 0;
    int wrong = 0;
};

TEST(Facts, OfSimulatedHostsAreTheirSettings) {
    std::map<std::string, Count> counts;
    const ReplayArguments& arguments = replayArguments();
    for (std::uint64_t seed = arguments.firstSeed; seed <= arguments.lastSeed; ++seed) {
        const Scenario scenario = tapedScenario(seed);
        const Bytes tape = tapeOf(scenario);
        const auto reading = blackbox::readRing(tape);
        const Answers settings = settingsOf(scenario.host);
        for (const blackbox::Fact& fact : blackbox::factsOf(blackbox::timed(reading->records))) {
            const auto setting = settings.find(fact.question);
            if (setting == settings.end() || fact.answer().empty()) continue;
            Count& count = counts[fact.question];
            ++(fact.answer() == setting->second ? count.right : count.wrong);
        }
    }
    // Somebody who moves the banks or a lost packet in the middle of it can look like another rule.
    const bool areMany = arguments.lastSeed - arguments.firstSeed > 30; // so that there was an occasion for each
    for (const auto& [question, setting] : settingsOf({})) {
        if (areMany) {
            EXPECT_GT(counts[question].right, 0) << question;
        }
        EXPECT_LE(counts[question].wrong * 10, counts[question].right) << question;
    }
    for (const char* const question : {"messages in a packet", "running status", "displays in a SysEx", "zone select",
                                       "AUTO LED of Read", "short names"})
        EXPECT_EQ(counts[question].wrong, 0) << question;
}

} // namespace
} // namespace lumbrine::simulation
