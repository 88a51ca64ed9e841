// The checkers of arrivals and scans see a seek that is lost or misses, and scans for no reason.
#include "tests/simulation/arrival_checker.h"
#include "tests/simulation/testing/host_tracks.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

// Twenty tracks, "A" to "T", on eight strips; at 5 s the phone asks for row 7, and a seek begins that ends at 6 s.
class Arrivals : public testing::Test {
protected:
    Arrivals() {
        evidence.sent.peers = {"phone"};
        scenario.host.bankRightAligns = true;
        evidence.record.lists = {{at(0), {}}};
        for (int id = 1; id <= 20; ++id) {
            const auto letter = static_cast<char>('A' + id - 1);
            evidence.record.lists[0].ids.push_back(id);
            evidence.record.states.push_back({at(0), trackCalled(std::string(1, letter), id)});
            evidence.sent.list.push_back({at(0.2),
                                          0,
                                          {0x01, 0x1B, 0x00, static_cast<std::uint8_t>(id - 1), 0, 0, 0, 0, 0, 0, 0, 0,
                                           0, 0, 0, 0, 1, static_cast<std::uint8_t>(letter), 0}});
        }
        evidence.sent.list.push_back({at(0.3), 0, {0x01, 0x16, 0x00, 0x00, 0x00, 0x14, 0x08}});
        ask(5, 7);
        run(Job::seek, 5, 6);
        arrive(5.5, 7);
    }

    void ask(double time, int row) {
        requests.seeks.push_back({at(time), row});
        acceptance.accepted.push_back({at(time), "phone", {0x01, 0x0B, 0x00, static_cast<std::uint8_t>(row)}});
    }
    void run(Job job, double begin, double end, const Names& map = {}) {
        JobRun run;
        run.job = job;
        run.before = run.first = at(begin);
        run.last = run.after = at(end);
        run.mapAfter = map;
        evidence.jobs.runs.push_back(run);
    }
    void arrive(double time, int offset) { evidence.record.banks = {{at(time), offset, at(time - 0.02)}}; }

    std::vector<LostSeek> check() {
        const ShownTracks shown(evidence.sent, evidence.record, evidence.jobs.runs);
        return checkArrivals(scenario, evidence, shown, acceptance, requests, wires);
    }

    Scenario scenario;
    Evidence evidence;
    Acceptance acceptance;
    Requests requests;
    SurfaceActions wires;
};

TEST_F(Arrivals, AreWhereTheRowsTrackIs) {
    EXPECT_THAT(check(), IsEmpty());
    arrive(5.5, 8);
    ASSERT_THAT(check(), SizeIs(1));
    EXPECT_EQ(check()[0].checker, "arrivals");
}

TEST_F(Arrivals, NearTheEndAreTheLastFullBank) {
    requests.seeks[0].target = 18;
    arrive(5.5, 12);
    EXPECT_THAT(check(), IsEmpty());
    arrive(5.5, 11);
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Arrivals, AreDueAlsoOfASeekThatNeverBegan) {
    evidence.jobs.runs.clear();
    arrive(1, 0);
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Arrivals, AreNotDueWhenSomebodyElseMovedTheBanks) {
    arrive(5.5, 8);
    evidence.record.banks[0].pressed.reset();
    EXPECT_THAT(check(), IsEmpty());
    arrive(5.5, 8);
    requests.bankMoves = {{at(5.2), 1}};
    EXPECT_THAT(check(), IsEmpty());
    requests.bankMoves.clear();
    run(Job::walk, 4, 5.1);
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(Arrivals, AreNotDueWhereTheMapIsNotTheSessionsAndTheLogTellsIt) {
    arrive(5.5, 8);
    evidence.jobs.runs[0].hostAtFirst.names = {"A", "B"};
    evidence.jobs.runs[0].mapAtFirst = {"A"};
    EXPECT_THAT(check(), SizeIs(1));
    evidence.lines = {{at(5.1), "✗ Dropped bank move: the bank position is unknown"}};
    EXPECT_THAT(check(), IsEmpty());
    evidence.jobs.runs[0].mapAtFirst = {"A", "B"};
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Arrivals, NeedAMapThatNothingHasDisturbed) {
    arrive(5.5, 8);
    evidence.lines = {{at(5.1), "✗ Dropped bank move: the bank position is unknown"}};
    run(Job::scan, 0.5, 1.9, {"A"});
    EXPECT_THAT(check(), SizeIs(1));
    evidence.disturbances = {{at(0.7), at(1)}};
    EXPECT_THAT(check(), IsEmpty());
    evidence.disturbances.clear();
    evidence.pauses = {{.from = at(1), .until = at(3)}};
    EXPECT_THAT(check(), SizeIs(1));
    evidence.pauses[0].until = at(3.1);
    EXPECT_THAT(check(), IsEmpty());
    evidence.pauses.clear();
    evidence.record.lists.push_back({at(1), evidence.record.lists[0].ids});
    EXPECT_THAT(check(), IsEmpty());
    evidence.lines.clear();
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Arrivals, AreDueOfTheNewestWishAlone) {
    ask(5.3, 9);
    arrive(5.5, 9);
    EXPECT_THAT(check(), IsEmpty());
    arrive(5.5, 7);
    ASSERT_THAT(check(), SizeIs(1));
    EXPECT_EQ(check()[0].checker, "arrivals-of-the-latest");
}

TEST_F(Arrivals, ThatAreDifficultHaveACheckerOfTheirOwn) {
    arrive(5.5, 8);
    wires = {{edge(4, 2, 4, 1)}};
    EXPECT_EQ(check().at(0).checker, "arrivals-beside-probes");
    scenario.host.bankLeftAligns = false;
    EXPECT_EQ(check().at(0).checker, "arrivals-on-unaligned-banks");
    scenario.host.latency = seconds(0.5);
    EXPECT_EQ(check().at(0).checker, "arrivals-on-slow-hosts");
}

TEST_F(Arrivals, MayBeFromAnywhere) {
    evidence.sent.list.push_back({at(1), 0, {0x01, 0x16, 0xFF, 0xFF, 0x00, 0x14, 0x08}});
    arrive(5.5, 8);
    EXPECT_EQ(check().at(0).checker, "arrivals-from-anywhere");
}

TEST_F(Arrivals, OfTheSameMapAgainAndAgainNeedAReason) {
    for (const double begin : {10.0, 20.0})
        run(Job::scan, begin, begin + 3, {"A"});
    EXPECT_THAT(checkScanRepeats(evidence, requests), IsEmpty());
    run(Job::scan, 30, 33, {"A"});
    EXPECT_THAT(checkScanRepeats(evidence, requests), SizeIs(1));
    requests.scans = {at(30)};
    EXPECT_THAT(checkScanRepeats(evidence, requests), IsEmpty());
    requests.scans.clear();
    evidence.record.lists.push_back({at(25), {}});
    EXPECT_THAT(checkScanRepeats(evidence, requests), IsEmpty());
}

} // namespace
} // namespace lumbrine::simulation
