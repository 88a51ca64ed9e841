// The checkers of jobs see what they are there for.
#include "tests/simulation/job_checkers.h"
#include "tests/simulation/presence_checker.h"
#include "tests/simulation/testing/wire_actions.h"
#include "tests/simulation/time_limits.h"

namespace lumbrine::simulation {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using Walk = WalkRequest::Kind;

Names numbers(int count) {
    Names names;
    for (int i = 0; i < count; ++i)
        names.push_back(std::to_string(i));
    return names;
}

// From `begin` to `end`, with 20 tracks on 8 strips at offset 3 before and after.
JobRun walkOf(Job job, double begin, double end) {
    const HostView host{.offset = 3, .width = 8, .names = numbers(20)};
    return {.job = job,
            .before = at(begin - 0.01),
            .first = at(begin),
            .last = at(end),
            .after = at(end + 0.01),
            .transportRan = false,
            .origin = 3,
            .width = 8,
            .hostAtFirst = host,
            .hostAfter = host,
            .mapAtFirst = host.names,
            .mapAfter = host.names};
}

Evidence with(const JobRun& run) {
    Evidence evidence;
    evidence.jobs.runs.push_back(run);
    return evidence;
}

// ---- Beginnings

TEST(Beginnings, OfSeeksAndTapsAreRequestsWithinASecond) {
    const Evidence evidence = with(walkOf(Job::seek, 5, 6));
    Requests requests;
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), SizeIs(1));
    requests.seeks = {{at(3.9), 7}};
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), SizeIs(1));
    requests.seeks = {{at(4.1), 7}};
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), IsEmpty());
    EXPECT_THAT(checkBeginnings(with(walkOf(Job::tap, 5, 6)), {}, {}, requests), SizeIs(1));
    requests.bankMoves = {{at(5), 1}};
    EXPECT_THAT(checkBeginnings(with(walkOf(Job::tap, 5, 6)), {}, {}, requests), IsEmpty());
}

TEST(Beginnings, OfSeeksMayWaitForTapsButNoLongerThanTwoSeconds) {
    Evidence evidence = with(walkOf(Job::seek, 5, 6));
    Requests requests;
    requests.bankMoves = {{at(2.5), 1}};
    evidence.jobs.runs.push_back(walkOf(Job::tap, 2.5, 4.985));
    requests.seeks = {{at(3.1), 7}};
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), IsEmpty());
    requests.seeks = {{at(2.9), 7}};
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), SizeIs(1));
}

TEST(Beginnings, OfScansAreRequestsTicksOrASecondAttempt) {
    Requests requests;
    EXPECT_THAT(checkBeginnings(with(walkOf(Job::scan, 5.2, 6)), {}, {}, requests), IsEmpty()); // the 13th tick
    EXPECT_THAT(checkBeginnings(with(walkOf(Job::scan, 5.3, 6)), {}, {}, requests), SizeIs(1));
    requests.scans = {at(5.3)};
    EXPECT_THAT(checkBeginnings(with(walkOf(Job::scan, 5.3, 6)), {}, {}, requests), IsEmpty());
    EXPECT_THAT(checkBeginnings(with(walkOf(Job::scan, 15.5, 16)), {}, {}, requests), SizeIs(1));

    Evidence twice = with(walkOf(Job::scan, 5.2, 6.29));
    twice.jobs.runs.push_back(walkOf(Job::scan, 8.3, 9));
    EXPECT_THAT(checkBeginnings(twice, {}, {}, {}), IsEmpty());
}

TEST(Beginnings, OfScansMayWaitForHandsForProbesAndForJobs) {
    const Evidence scan = with(walkOf(Job::scan, 5.3, 6));
    Acceptance acceptance;
    acceptance.accepted = {{at(3.8), "a", {0x01, 0x02, 0x03}}, {at(4), "a", {0x01, 0x03, 0x03}}};
    EXPECT_THAT(checkBeginnings(scan, {}, acceptance, {}), IsEmpty());
    acceptance.accepted.erase(acceptance.accepted.begin());
    EXPECT_THAT(checkBeginnings(scan, {}, acceptance, {}), SizeIs(1));
    EXPECT_THAT(checkBeginnings(scan, {{edge(5.15, 3, 4, 1), edge(5.3, 3, 4, 0)}}, {}, {}), IsEmpty());
    EXPECT_THAT(checkBeginnings(scan, {{edge(4.95, 3, 4, 1), edge(5.1, 3, 4, 0)}}, {}, {}), SizeIs(1));

    Evidence later = scan;
    later.jobs.runs.push_back(walkOf(Job::seek, 4.5, 5.295));
    Requests requests;
    requests.seeks = {{at(4.5), 7}};
    EXPECT_THAT(checkBeginnings(later, {}, {}, requests), IsEmpty());
}

TEST(HandsRest, BeforeAScanOrAWalk) {
    const SurfaceActions moved{{{at(4), WireAction::Kind::fader, 3, 0, 777}}};
    EXPECT_THAT(checkHandsRest({walkOf(Job::scan, 5.2, 6)}, moved, {}), SizeIs(1));
    EXPECT_THAT(checkHandsRest({walkOf(Job::scan, 5.6, 6)}, moved, {}), IsEmpty());
    EXPECT_THAT(checkHandsRest({walkOf(Job::seek, 5.2, 6)}, moved, {}), IsEmpty());
    const SurfaceActions touched{{edge(1, 3, 0, 1)}};
    EXPECT_THAT(checkHandsRest({walkOf(Job::walk, 5, 6)}, touched, {}), SizeIs(1));
    EXPECT_THAT(checkHandsRest({walkOf(Job::walk, 5, 6)}, {{edge(1, 3, 0, 1), edge(2, 3, 0, 0)}}, {}), IsEmpty());
    Acceptance acceptance;
    acceptance.accepted = {{at(4.995), "a", {0x01, 0x03, 0x03}}};
    EXPECT_THAT(checkHandsRest({walkOf(Job::walk, 5, 6)}, touched, acceptance), IsEmpty());
}

TEST(Beginnings, OfWalksAreRequestsEachForOne) {
    Evidence evidence = with(walkOf(Job::walk, 5, 6));
    evidence.jobs.runs.push_back(walkOf(Job::walk, 7, 8));
    Requests requests;
    requests.walks.push_back({.at = at(4), .kind = Walk::faders, .steps = 1, .modePort = -1, .faders = {}});
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), SizeIs(1));
    requests.walks.push_back(requests.walks.front());
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), IsEmpty());
}

TEST(Beginnings, WhileTheTransportRunsAreOnlyThoseOfSeeksAndGroupFaders) {
    JobRun walk = walkOf(Job::walk, 5.2, 6);
    walk.transportRan = true;
    Requests requests;
    requests.walks.push_back({.at = at(4), .kind = Walk::faders, .steps = 1, .modePort = -1, .faders = {}});
    requests.seeks.push_back({at(5.2), 7});
    Evidence evidence = with(walk);
    evidence.jobs.lines = {{at(6), "✓ Applied faders to 1 group tracks outside the window"}};
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), IsEmpty());
    evidence.jobs.lines = {{at(6), "✓ Applied automation mode to 1 group tracks"}};
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), SizeIs(1));

    evidence.jobs.runs[0].job = Job::seek;
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), IsEmpty());
    evidence.jobs.runs[0].job = Job::scan;
    EXPECT_THAT(checkBeginnings(evidence, {}, {}, requests), SizeIs(1));
}

// ---- Lengths

TEST(Lengths, OfSeeksCountFromTheLastTarget) {
    Requests requests;
    requests.seeks = {{at(5), 7}, {at(50), 9}};
    const Evidence evidence = with(walkOf(Job::seek, 5, 51));
    EXPECT_EQ(lengthOf(evidence.jobs.runs[0], requests), seconds(1));
    EXPECT_THAT(checkLengths(evidence.jobs, requests), IsEmpty());
    requests.seeks.pop_back();
    EXPECT_THAT(checkLengths(evidence.jobs, requests), SizeIs(1));
}

TEST(Lengths, HaveALimitForJobsThatNeverEndToo) {
    Evidence evidence = with(walkOf(Job::scan, 5, 400));
    evidence.jobs.runs[0].after = TimePoint::max();
    EXPECT_THAT(checkLengths(evidence.jobs, {}), SizeIs(1));
}

TEST(Lengths, GrowWithTheSession) {
    EXPECT_LT(seekLimit({.tracks = 20, .strips = 8}), seconds(9));
    EXPECT_GT(seekLimit({.tracks = 400, .strips = 8}), seconds(60));
    EXPECT_LT(scanLimit({.tracks = 1000, .strips = 8}), seconds(300));
}

// ---- Places

class Places : public testing::Test {
protected:
    std::vector<std::string> check() { return checkPlaces(scenario, evidence, requests, walked); }

    Scenario scenario;
    Evidence evidence;
    Requests requests;
    std::vector<WalkedFader> walked;
};

TEST_F(Places, AfterAWalkAreThoseBefore) {
    evidence = with(walkOf(Job::walk, 5, 9));
    EXPECT_THAT(check(), IsEmpty());
    evidence.jobs.runs[0].hostAfter.offset = 4;
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Places, AreNobodysFaultWhenTheHostWasDisturbed) {
    evidence = with(walkOf(Job::walk, 5, 9));
    evidence.jobs.runs[0].hostAfter.offset = 4;
    evidence.disturbances = {{at(8), at(10)}};
    EXPECT_THAT(check(), IsEmpty());
    evidence.disturbances.clear();
    requests.bankMoves = {{at(7), 0}};
    EXPECT_THAT(check(), IsEmpty());
    requests.bankMoves.clear();
    scenario.host.dropOnePressIn = 10;
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(Places, OfAWalksFadersAreItsMembers) {
    evidence = with(walkOf(Job::walk, 5, 9));
    evidence.jobs.hostOffsets = {{at(5), 3}, {at(6), 8}, {at(8), 3}};
    requests.walks = {{.at = at(4), .kind = Walk::faders, .steps = 1, .modePort = -1, .faders = {{10, 555}}}};
    walked = {{at(7), 2, 555}};
    EXPECT_THAT(check(), IsEmpty());
    walked = {{at(7), 3, 555}};
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Places, ThatAreKnownAreTrue) {
    evidence.jobs.positions = {{at(5), 3, 4}, {at(5.4), 4, 4}};
    EXPECT_THAT(checkPositions(evidence), IsEmpty());
    evidence.jobs.positions.push_back({at(5.8), 3, 4});
    EXPECT_THAT(checkPositions(evidence), SizeIs(1));
    evidence.disturbances = {{at(5.5), at(6)}};
    EXPECT_THAT(checkPositions(evidence), IsEmpty());
}

// ---- Presence

Evidence seen(double time, bool proTools, bool client, int width) {
    Evidence evidence;
    evidence.surfaces = {{{at(1), {0x90, 0x00, 0x7F}}}, {{at(1), {0x90, 0x00, 0x7F}}}};
    evidence.jobs.presence = {{at(time), proTools, client, width}};
    return evidence;
}

TEST(PresenceChecker, KnowsWhenSomebodyIsThere) {
    Acceptance acceptance;
    acceptance.accepted = {{at(1), "a", {0x01, 0x07}}};
    EXPECT_THAT(checkPresence(seen(2, true, true, 16), acceptance), IsEmpty());
    EXPECT_THAT(checkPresence(seen(2, false, false, 8), acceptance), SizeIs(3));
    EXPECT_THAT(checkPresence(seen(3.2, true, true, 16), acceptance), IsEmpty());
    EXPECT_THAT(checkPresence(seen(3.2, false, true, 8), acceptance), IsEmpty()); // it depends on the tick
    EXPECT_THAT(checkPresence(seen(4, true, true, 16), acceptance), SizeIs(2));
    EXPECT_THAT(checkPresence(seen(7, false, false, 8), acceptance), IsEmpty());
    EXPECT_THAT(checkPresence(seen(7, false, true, 8), acceptance), SizeIs(1));
}

} // namespace
} // namespace lumbrine::simulation
