// The checkers of buttons, turns and walks see what they are there for.
#include "tests/simulation/button_checkers.h"
#include "tests/simulation/testing/wire_actions.h"
#include "tests/simulation/turn_checker.h"
#include "tests/simulation/walk_actions.h"

#include <algorithm>
#include <iterator>

namespace lumbrine::simulation {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using Kind = WireAction::Kind;

// Surely under way from `begin` to `end`.
JobRun runOf(Job job, double begin, double end) {
    JobRun run;
    run.job = job;
    run.before = run.first = at(begin);
    run.last = run.after = at(end);
    return run;
}

TEST(Zones, AreThoseThatTheReceiverKnows) {
    EXPECT_THAT(checkZones({{edge(1, 3, 2, 1), edge(1, 10, 0, 1), edge(1, 11, 2, 1), edge(1, 24, 1, 1)}}), IsEmpty());
    EXPECT_THAT(checkZones({{edge(1, 14, 4, 1), edge(1, 3, 5, 1), edge(1, 8, 1, 1)}}), SizeIs(3));
}

TEST(BankButtons, ArePressedByJobsAndClients) {
    const SurfaceActions wires{{edge(1, 10, 3, 1), edge(1.03, 10, 3, 0)}};
    EXPECT_THAT(checkBankButtons(wires, {}, {}), SizeIs(1));
    EXPECT_THAT(checkBankButtons(wires, {runOf(Job::seek, 0.9, 2)}, {}), IsEmpty());
    Requests requests;
    requests.bankMoves = {{at(1), 2}};
    EXPECT_THAT(checkBankButtons(wires, {}, requests), SizeIs(1));
    requests.bankMoves = {{at(1), 3}};
    EXPECT_THAT(checkBankButtons(wires, {}, requests), IsEmpty());
}

TEST(BankButtons, AreHeldFor30MillisecondsOnSurfaceA) {
    const std::vector<JobRun> runs{runOf(Job::scan, 0, 9)};
    EXPECT_THAT(checkBankButtons({{edge(1, 10, 3, 1), edge(1.04, 10, 3, 0)}}, runs, {}), SizeIs(2));
    EXPECT_THAT(checkBankButtons({{edge(1, 10, 3, 1)}}, runs, {}), SizeIs(1));
    EXPECT_THAT(checkBankButtons({{}, {edge(1, 10, 3, 1), edge(1.03, 10, 3, 0)}}, runs, {}), SizeIs(2));
}

TEST(Assignment, ChangesForAClientOrToTheLeft) {
    const std::vector<WireAction> toggle{edge(1, 11, 2, 1), edge(1.06, 11, 2, 0)};
    const std::vector<WireAction> toTheLeft{edge(1, 11, 7, 1), edge(1.06, 11, 7, 0), edge(1.12, 11, 2, 1),
                                            edge(1.18, 11, 2, 0)};
    EXPECT_THAT(checkAssignment({toggle}, {}), SizeIs(1));
    EXPECT_THAT(checkAssignment({toTheLeft}, {}), IsEmpty());
    EXPECT_THAT(checkAssignment({{toTheLeft[0], toTheLeft[1]}}, {}), SizeIs(1));
    Requests requests;
    requests.panSides = {at(1)};
    EXPECT_THAT(checkAssignment({toggle}, requests), IsEmpty());
    EXPECT_THAT(checkAssignment({{}}, requests), SizeIs(1));
}

// ---- Automation

const std::vector<WireAction> question{edge(1, 3, 4, 1), edge(1.15, 3, 4, 0)};
const std::vector<WireAction> setting{edge(1, 3, 4, 1), edge(1.05, 24, 2, 1), edge(1.11, 24, 2, 0),
                                      edge(1.26, 3, 4, 0)};

class AutomationChecker : public testing::Test {
protected:
    AutomationChecker() { jobs.ended = at(100); }

    std::vector<std::string> check(const SurfaceActions& wires) {
        std::vector<std::string> violations = checkAutomation(wires, jobs, requests, acceptance);
        std::ranges::copy(checkModesAreSet(wires, jobs, requests, acceptance), std::back_inserter(violations));
        return violations;
    }

    JobRecord jobs;
    Requests requests;
    Acceptance acceptance;
};

TEST_F(AutomationChecker, LetsTheReceiverAskWhenNothingSpeaksAgainstIt) {
    EXPECT_THAT(check({question}), IsEmpty());
    jobs.runs = {runOf(Job::walk, 0, 9)};
    EXPECT_THAT(check({question}), IsEmpty());
}

TEST_F(AutomationChecker, FindsQuestionsDuringJobsAndPlaybackAndUnderAFinger) {
    jobs.runs = {runOf(Job::scan, 0, 9)};
    EXPECT_THAT(check({question}), SizeIs(1));
    jobs.runs.clear();
    jobs.transport = {{at(0), at(9)}};
    EXPECT_THAT(check({question}), SizeIs(1));
    jobs.transport.clear();
    acceptance.accepted = {{at(0.5), "a", {0x01, 0x02, 0x03}}};
    EXPECT_THAT(check({question}), SizeIs(1));
    acceptance.accepted.push_back({at(0.6), "a", {0x01, 0x03, 0x03}});
    EXPECT_THAT(check({question}), IsEmpty());
}

TEST_F(AutomationChecker, WantsEachModeSetThatWasAskedForAndNoOther) {
    EXPECT_THAT(check({setting}), SizeIs(1));
    requests.autoModes = {{at(0.9), 3, 2}};
    EXPECT_THAT(check({setting}), IsEmpty());
    EXPECT_THAT(check({{}}), SizeIs(1));
    requests.autoModes = {{at(0.9), 11, 2}}; // on a surface that nobody looks at
    EXPECT_THAT(check({{}}), IsEmpty());
    EXPECT_THAT(check({{}, setting}), IsEmpty());
}

TEST_F(AutomationChecker, LetsWalksSetTheModeThatWasAskedFor) {
    jobs.runs = {runOf(Job::walk, 0, 9)};
    requests.walks = {{.at = at(0), .kind = WalkRequest::Kind::modes, .steps = 1, .modePort = 1, .faders = {}}};
    EXPECT_THAT(check({setting}), SizeIs(1));
    requests.walks[0].modePort = 2;
    EXPECT_THAT(check({setting}), IsEmpty());
}

TEST_F(AutomationChecker, FindsTwoSwitchesAtOnceAndSwitchesHeldForTheWrongTime) {
    EXPECT_THAT(check({question, question}), SizeIs(1));
    EXPECT_THAT(check({{edge(1, 3, 4, 1), edge(1.2, 3, 4, 0)}}), SizeIs(1));
    EXPECT_THAT(check({{edge(1, 3, 4, 1)}}), SizeIs(1));
    EXPECT_THAT(check({{edge(1, 24, 2, 1), edge(1.06, 24, 2, 0)}}), SizeIs(2));
}

// ---- What walks play, and turns

TEST(WalkActions, AreTakenOffTheWireWhileAWalkRuns) {
    const std::vector<WireAction> wire{edge(1, 3, 0, 1), {at(1), Kind::fader, 3, 0, 777}, edge(1.03, 3, 0, 0)};
    EXPECT_THAT(splitWire(wire, {}, {}, 0).ofClient, SizeIs(3));
    const SplitWire split = splitWire(wire, {}, {runOf(Job::walk, 0, 9)}, 1);
    EXPECT_THAT(split.ofClient, IsEmpty());
    ASSERT_THAT(split.ofWalks, SizeIs(1));
    EXPECT_EQ(split.ofWalks[0].strip, 11);
    EXPECT_THAT(splitWire(wire, wire, {runOf(Job::walk, 0, 9)}, 0).ofClient, SizeIs(3)); // the client's own

    Requests requests;
    EXPECT_THAT(checkWalkedFaders(split.ofWalks, requests), SizeIs(1));
    requests.walks = {
        {.at = at(0), .kind = WalkRequest::Kind::faders, .steps = 1, .modePort = -1, .faders = {{40, 777}}}};
    EXPECT_THAT(checkWalkedFaders(split.ofWalks, requests), IsEmpty());
    EXPECT_THAT(checkWalkedFaders({split.ofWalks[0], split.ofWalks[0]}, requests), SizeIs(1));
}

TEST(Turns, AreThoseOfTheClientOrOfAPanSeek) {
    const WireAction click{at(1), Kind::vpot, 3, 0, 0x41};
    const WireAction burst{at(1), Kind::vpot, 3, 0, 0x47};
    EXPECT_THAT(checkTurns({burst}, {burst}, {}, 0), IsEmpty());
    EXPECT_THAT(checkTurns({}, {burst}, {}, 0), SizeIs(1));
    EXPECT_THAT(checkTurns({click}, {}, {}, 0), SizeIs(1));
    Requests requests;
    requests.panSeeks = {{at(0), 11}};
    EXPECT_THAT(checkTurns({click}, {}, requests, 0), SizeIs(1));
    EXPECT_THAT(checkTurns({click}, {}, requests, 1), IsEmpty());
    EXPECT_THAT(checkTurns({burst}, {}, requests, 1), SizeIs(1));
}

} // namespace
} // namespace lumbrine::simulation
