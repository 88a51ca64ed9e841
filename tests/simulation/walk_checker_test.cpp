// The checkers of walks see a member that was not reached, and a view that was not put back.
#include "tests/simulation/testing/host_tracks.h"
#include "tests/simulation/testing/wire_actions.h"
#include "tests/simulation/walk_checker.h"

namespace lumbrine::simulation {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

// A group of tracks 10 and 11 in rows 9 and 10; its faders are asked for at 1 s and its walk lasts from 2 s to 6 s.
class Walked : public testing::Test {
protected:
    Walked() {
        evidence.sent.peers = {"phone"};
        evidence.record.states = {{at(0), trackCalled("J", 10)}, {at(0), trackCalled("K", 11)}};
        for (const std::uint8_t index : {std::uint8_t{9}, std::uint8_t{10}})
            evidence.sent.list.push_back({at(0.2),
                                          0,
                                          {0x01, 0x1B, 0x00, index, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1,
                                           static_cast<std::uint8_t>('A' + index), 0}});
        acceptance.changes = {{at(0), std::nullopt, "phone"}};
        ask(1);
        JobRun run;
        run.job = Job::walk;
        run.before = run.first = at(2);
        run.last = run.after = at(6);
        evidence.jobs.runs = {run};
        reach(3, 10);
        reach(4, 11);
    }

    void ask(double time) {
        acceptance.accepted.push_back(
            {at(time), "phone", {0x01, 0x23, 0x02, 0x00, 0x09, 0x20, 0x00, 0x00, 0x0A, 0x30, 0x00}});
    }
    void reach(double time, int track) {
        const int value = track == 10 ? 0x2000 : 0x3000;
        evidence.record.acts.push_back({at(time), at(time + 0.02), HostAct::Kind::move, 3, value, track});
    }
    void bank(double time, int offset, bool pressed = true) {
        evidence.record.banks.push_back({at(time), offset, pressed ? std::optional(at(time - 0.02)) : std::nullopt});
    }

    Requests requests() {
        acceptance.numbers.assign(acceptance.accepted.size(), 0);
        return requestsIn(acceptance);
    }
    std::vector<std::string> members() {
        const ShownTracks shown(evidence.sent, evidence.record, evidence.jobs.runs);
        return checkMembers(evidence, shown, acceptance, requests());
    }
    std::vector<std::string> returns() { return checkReturns(evidence, requests()); }

    Evidence evidence;
    Acceptance acceptance;
};

TEST_F(Walked, MembersAreReachedWithTheirValues) {
    EXPECT_THAT(members(), IsEmpty());
    evidence.record.acts[1].track = 12;
    EXPECT_THAT(members(), SizeIs(1));
    evidence.record.acts[1].track = 11;
    evidence.record.acts[1].detail = 5;
    EXPECT_THAT(members(), SizeIs(1));
}

TEST_F(Walked, MembersThatAreNotReachedAreCountedInTheLog) {
    evidence.record.acts.pop_back();
    evidence.jobs.lines = {{at(6), "✓ Applied faders to 2 group tracks outside the window"}};
    EXPECT_THAT(members(), SizeIs(1));
    evidence.jobs.lines = {{at(6), "reached 2 of 2 group tracks"}};
    EXPECT_THAT(members(), SizeIs(1));
    evidence.jobs.lines = {{at(6), "reached 1 of 2 group tracks"}};
    EXPECT_THAT(members(), IsEmpty());
}

TEST_F(Walked, AGroupThatIsDroppedIsToldOf) {
    evidence.record.acts.clear();
    EXPECT_THAT(members(), SizeIs(1));
    evidence.jobs.lines = {{at(6), "Group faders dropped: the surfaces were busy"}};
    EXPECT_THAT(members(), IsEmpty());
    acceptance.accepted.clear();
    ask(15.9); // the line stands for a run of drops
    EXPECT_THAT(members(), IsEmpty());
    acceptance.accepted.clear();
    ask(16.1);
    EXPECT_THAT(members(), SizeIs(1));
}

TEST_F(Walked, AnotherWalksEndTellsNothingOfThisOne) {
    evidence.record.acts.clear();
    evidence.jobs.lines = {{at(6), "Aborted capturing the visible range (Pro Tools is not responding)"}};
    EXPECT_THAT(members(), SizeIs(1));
    evidence.jobs.lines = {{at(7.1), "Group faders dropped: the surfaces were busy"}}; // the walk is over
    EXPECT_THAT(members(), SizeIs(1));
    evidence.jobs.runs.clear();
    evidence.jobs.lines = {{at(11.5), "Group faders dropped: the surfaces were busy"}}; // it was too old to begin
    EXPECT_THAT(members(), IsEmpty());
}

TEST_F(Walked, ANewerWishTakesItsMembersOver) {
    evidence.record.acts.clear();
    ask(1.5);
    EXPECT_THAT(members(), SizeIs(1));
}

TEST_F(Walked, WhatAFormerOwnerAskedForIsNobodys) {
    evidence.record.acts.clear();
    acceptance.changes.push_back({at(1.5), "phone", "other"});
    EXPECT_THAT(members(), IsEmpty());
}

TEST_F(Walked, TheViewIsPutBack) {
    bank(0.1, 3);
    bank(2.5, 8);
    EXPECT_THAT(returns(), SizeIs(1));
    bank(5.5, 3);
    EXPECT_THAT(returns(), IsEmpty());
}

TEST_F(Walked, TheUsersOwnMoveIsNobodysFault) {
    bank(2.5, 8);
    bank(4, 9, false);
    EXPECT_THAT(returns(), IsEmpty());
}

} // namespace
} // namespace lumbrine::simulation
