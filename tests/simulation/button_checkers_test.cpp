// The checkers of buttons and walks see what they are there for.
#include "tests/simulation/button_checkers.h"
#include "tests/simulation/testing/wire_actions.h"
#include "tests/simulation/walk_actions.h"

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

TEST(BankButtons, ArePressedByJobs) {
    const SurfaceActions wires{{edge(1, 10, 3, 1), edge(1.03, 10, 3, 0)}};
    EXPECT_THAT(checkBankButtons(wires, {}, {}), SizeIs(1));
    EXPECT_THAT(checkBankButtons(wires, {runOf(Job::seek, 0.9, 2)}, {}), IsEmpty());
}

TEST(BankButtons, OfTapsAreThoseThatAClientTapped) {
    const SurfaceActions wires{{edge(1, 10, 3, 1), edge(1.03, 10, 3, 0)}};
    const std::vector<JobRun> taps{runOf(Job::tap, 0.9, 2)};
    Requests requests;
    requests.bankMoves = {{at(1), 2}};
    EXPECT_THAT(checkBankButtons(wires, taps, requests), SizeIs(1));
    requests.bankMoves = {{at(0.5), 3}};
    EXPECT_THAT(checkBankButtons(wires, taps, requests), IsEmpty());
    EXPECT_THAT(checkBankButtons(wires, {}, requests), SizeIs(1));
    const SurfaceActions twice{{wires[0][0], wires[0][1], edge(1.1, 10, 3, 1), edge(1.13, 10, 3, 0)}};
    EXPECT_THAT(checkBankButtons(twice, taps, requests), SizeIs(1));
    requests.bankMoves = {{at(-1.5), 3}};
    EXPECT_THAT(checkBankButtons(wires, taps, requests), SizeIs(1));
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
    requests.panSides = {at(1.1), at(1.15)}; // one for the other
    EXPECT_THAT(checkAssignment({toTheLeft}, requests), IsEmpty());
    requests.panSides = {at(0.95)};
    EXPECT_THAT(checkAssignment({toTheLeft}, requests), SizeIs(1));
    EXPECT_THAT(checkAssignment({toTheLeft}, requests, Pauses({{at(0.9), at(1)}})), IsEmpty()); // just begun
    requests.panSides = {at(1.19)};
    EXPECT_THAT(checkAssignment({toTheLeft}, requests), SizeIs(1));
}

// ---- Automation

const std::vector<WireAction> question{edge(1, 3, 4, 1), edge(1.15, 3, 4, 0)};
const std::vector<WireAction> setting{edge(1, 3, 4, 1), edge(1.05, 24, 2, 1), edge(1.11, 24, 2, 0),
                                      edge(1.26, 3, 4, 0)};

class AutomationChecker : public testing::Test {
protected:
    AutomationChecker() { jobs.ended = at(100); }

    std::vector<std::string> check(const SurfaceActions& wires) {
        return checkAutomation(wires, jobs, requests, acceptance);
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
    EXPECT_THAT(check({question, {edge(-1, 5, 0, 1)}}), SizeIs(1));
    EXPECT_THAT(check({question, {edge(-1, 5, 0, 1), edge(0.9, 5, 0, 0)}}), IsEmpty());
    const WireAction move{at(-0.4), Kind::fader, 6, 0, 777};
    EXPECT_THAT(check({question, {move}}), SizeIs(1));
    EXPECT_THAT(check({question, {{at(-0.6), Kind::fader, 6, 0, 777}}}), IsEmpty());
}

TEST_F(AutomationChecker, WantsNoModeSetThatNobodyAskedFor) {
    EXPECT_THAT(check({setting}), SizeIs(1));
    requests.autoModes = {{at(0.9), 3, 2}};
    EXPECT_THAT(check({setting}), IsEmpty());
    EXPECT_THAT(check({{}}), IsEmpty());
    requests.autoModes = {{at(-1.1), 3, 2}};
    EXPECT_THAT(check({setting}), SizeIs(1));
    requests.autoModes = {{at(0.9), 4, 2}};
    EXPECT_THAT(check({setting}), SizeIs(1));
    jobs.runs = {runOf(Job::seek, 0.8, 0.95)}; // it may have taken the track to another strip
    EXPECT_THAT(check({setting}), IsEmpty());
    requests.autoModes = {{at(0.9), 11, 2}}; // on a surface that nobody looks at
    EXPECT_THAT(check({setting}), SizeIs(1));
}

TEST_F(AutomationChecker, LetsAModeBeGivenUp) {
    const std::vector<WireAction> givenUp{edge(1, 3, 4, 1), edge(1.2, 3, 4, 0)};
    EXPECT_THAT(check({givenUp}), SizeIs(1));
    requests.autoModes = {{at(0.9), 3, 2}};
    EXPECT_THAT(check({givenUp}), IsEmpty());
}

TEST_F(AutomationChecker, LetsAModeBeCutShortWhenAnotherDeviceTakesControl) {
    const std::vector<WireAction> unpressed{edge(1, 3, 4, 1), edge(1.03, 3, 4, 0)};
    std::vector<WireAction> pressed = setting;
    pressed.back() = edge(1.14, 3, 4, 0);
    requests.autoModes = {{at(0.9), 3, 2}};
    EXPECT_THAT(check({unpressed}), SizeIs(1));
    EXPECT_THAT(check({pressed}), SizeIs(1));
    acceptance.changes = {{at(1.02), "phone", "other", 2}};
    EXPECT_THAT(check({unpressed}), IsEmpty());
    EXPECT_THAT(check({pressed}), IsEmpty());
    requests.autoModes.clear(); // the receiver's own question
    EXPECT_THAT(check({unpressed}), SizeIs(1));
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
    EXPECT_THAT(check({{edge(1, 3, 4, 1), edge(1.18, 3, 4, 0)}}), SizeIs(1));
    EXPECT_THAT(check({{edge(1, 3, 4, 1)}}), SizeIs(1));
    EXPECT_THAT(check({{edge(1, 24, 2, 1), edge(1.06, 24, 2, 0)}}), SizeIs(2));
}

// ---- What walks play

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

} // namespace
} // namespace lumbrine::simulation
