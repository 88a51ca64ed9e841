// The checker of drops sees a command that nothing came of and nobody told of.
#include "tests/simulation/drop_checker.h"
#include "tests/simulation/testing/host_tracks.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

// Twenty tracks on eight strips; the phone has been told of row 9, track 10, and that strip 3 shows it.
class Drops : public testing::Test {
protected:
    Drops() {
        evidence.sent.peers = {"phone"};
        evidence.jobs.ended = at(60);
        evidence.record.lists = {{at(0), {}}};
        for (int id = 1; id <= 20; ++id)
            evidence.record.lists[0].ids.push_back(id);
        evidence.record.states = {{at(0), trackCalled("J", 10)}};
        evidence.record.shown = {{at(0), 3, 10, "J"}};
        tell({0x01, 0x1B, 0x00, 0x09, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 'J', 0});
        tell({0x01, 0x10, 0x03, 'J', ' ', ' ', ' '});
        acceptance.changes = {{at(0), std::nullopt, "phone"}};
    }

    void tell(Bytes bytes) { evidence.sent.list.push_back({at(0.2), 0, std::move(bytes)}); }
    void ask(double time, Bytes bytes) { acceptance.accepted.push_back({at(time), "phone", std::move(bytes)}); }
    void say(double time, const std::string& line) { evidence.jobs.lines.emplace_back(at(time), line); }
    void run(Job job, double begin, double end) {
        JobRun run;
        run.job = job;
        run.before = run.first = at(begin);
        run.last = run.after = at(end);
        evidence.jobs.runs.push_back(run);
    }

    std::vector<std::string> check() {
        acceptance.numbers.assign(acceptance.accepted.size(), 0);
        const ShownTracks shown(evidence.sent, evidence.record, evidence.jobs.runs);
        return checkDropsAreTold(scenario, evidence, shown, acceptance, requestsIn(acceptance));
    }

    const Bytes mode3{0x01, 0x0F, 0x03, 0x04};
    const Bytes faderOf9{0x01, 0x23, 0x01, 0x00, 0x09, 0x20, 0x00};
    const Bytes mute9{0x01, 0x21, 0x01, 0x01, 0x00, 0x09};
    const Bytes seek9{0x01, 0x0B, 0x00, 0x09};
    const Bytes bankRight{0x01, 0x0A, 0x03};

    Scenario scenario;
    Evidence evidence;
    Acceptance acceptance;
};

TEST_F(Drops, OfAModeAreTold) {
    ask(5, mode3);
    EXPECT_THAT(check(), SizeIs(1));
    say(7.1, "Dropped a mode: the surfaces were busy");
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(Drops, AreToldInTime) {
    ask(5, mode3);
    say(8.1, "Dropped a mode: the surfaces were busy");
    EXPECT_THAT(check(), SizeIs(1));
    evidence.jobs.lines = {{at(7), "Scan: aborted (Pro Tools not connected)"}}; // which nobody asked for
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Drops, InARunAreToldOnce) {
    ask(5, mode3);
    ask(10, mode3);
    say(6, "Dropped a mode: the surfaces were busy");
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(Drops, AreNoneWhereSomethingCameOfIt) {
    ask(5, mode3);
    evidence.record.acts = {{at(5.5), at(5.6), HostAct::Kind::mode, 3, 4, 10}};
    ask(6, faderOf9);
    run(Job::walk, 7, 9);
    ask(20, mute9);
    evidence.setters = {{at(20.2), 85, {{"J"}, true}}};
    EXPECT_THAT(check(), IsEmpty());
    evidence.jobs.runs.clear();
    evidence.setters.clear();
    EXPECT_THAT(check(), SizeIs(2));
}

TEST_F(Drops, OfWhatIsNewerCount) {
    ask(5, mode3);
    ask(6, mode3);
    EXPECT_THAT(check(), SizeIs(1));
}

TEST_F(Drops, OfAFormerOwnersOrForAnotherHostAreNobodys) {
    ask(5, mode3);
    evidence.disturbances = {{at(6), at(7)}};
    EXPECT_THAT(check(), IsEmpty());
    evidence.disturbances.clear();
    acceptance.changes.push_back({at(6), "phone", "other", 1});
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(Drops, OfMovesThatMeetAScanAreTold) {
    run(Job::scan, 4, 10);
    ask(5, seek9);
    EXPECT_THAT(check(), SizeIs(1));
    acceptance.accepted[0].bytes = bankRight;
    EXPECT_THAT(check(), SizeIs(1));
    run(Job::seek, 10.5, 11);
    EXPECT_THAT(check(), IsEmpty());
}

} // namespace
} // namespace lumbrine::simulation
