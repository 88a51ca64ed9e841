// The checkers of presses and turns see what they are there for.
#include "tests/simulation/press_checkers.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Kind = WireAction::Kind;

class WaitingPresses : public testing::Test {
protected:
    void askMute(double time) { received.push_back({at(time), "a", {0x01, 0x04, 0x03}}); }
    void askTurn(double time) { received.push_back({at(time), "a", {0x01, 0x07, 0x03, 0x07}}); }
    void job(double begin, double end) {
        JobRun run;
        run.job = Job::seek;
        run.before = run.first = at(begin);
        run.last = run.after = at(end);
        runs.push_back(run);
    }

    std::vector<std::string> presses() const {
        return checkPresses(wires, acceptedOf(received), Closings(runs, pauses), lines);
    }
    std::vector<std::string> turns() const {
        return checkTurns(wires, acceptedOf(received), requests, Closings(runs, pauses), lines);
    }
    std::vector<std::string> ends() const { return checkPressesEnd(wires.front(), Closings(runs, pauses)); }

    const Pauses pauses;
    SurfaceActions wires{{}, {}};
    std::vector<ReceivedDatagram> received;
    Requests requests;
    std::vector<JobRun> runs;
    LogLines lines;
};

TEST_F(WaitingPresses, GoOutAtOnceAndOnce) {
    askMute(1);
    EXPECT_THAT(presses(), Contains(HasSubstr("lost")));
    wires = {{edge(1, 3, 2, 1)}, {}};
    EXPECT_THAT(presses(), IsEmpty());
    wires = {{edge(1, 3, 2, 1), edge(1, 3, 2, 1)}, {}};
    EXPECT_THAT(presses(), Contains(HasSubstr("nobody asked for")));
    wires = {{edge(1.001, 3, 2, 1)}, {}};
    EXPECT_THAT(presses(), SizeIs(2));
}

TEST_F(WaitingPresses, ThatMeetAJobWaitForASecondOrAreDroppedWithALine) {
    askMute(1);
    job(0.5, 1.6);
    EXPECT_THAT(presses(), Contains(HasSubstr("without a word")));
    lines = {{at(2), "✗ Command dropped: the surfaces were busy"}};
    EXPECT_THAT(presses(), IsEmpty());
    lines.clear();
    wires = {{}, {edge(1.8, 2, 2, 1)}};
    EXPECT_THAT(presses(), IsEmpty());
    wires = {{}, {edge(2.1, 2, 2, 1)}};
    EXPECT_THAT(presses(), SizeIs(2));
}

TEST_F(WaitingPresses, DoNotWaitOtherwise) {
    askMute(1);
    job(1.1, 1.6);
    wires = {{edge(1.8, 3, 2, 1)}, {}};
    lines = {{at(2), "✗ Command dropped: the surfaces were busy"}};
    EXPECT_THAT(presses(), SizeIs(2));
}

TEST_F(WaitingPresses, DoNotGoOutDuringAJob) {
    askMute(1);
    job(0.5, 1.6);
    wires = {{edge(1, 3, 2, 1)}, {}};
    EXPECT_THAT(presses(), Contains(HasSubstr("while a job has the surfaces")));
}

TEST_F(WaitingPresses, OfTurnsAreTheSame) {
    askTurn(1);
    EXPECT_THAT(turns(), Contains(HasSubstr("turn lost")));
    wires = {{{at(1), Kind::vpot, 3, 0, 0x47}}, {}};
    EXPECT_THAT(turns(), IsEmpty());
    job(0.5, 1.6);
    EXPECT_THAT(turns(), Contains(HasSubstr("while a job has the surfaces")));
    wires = {{{at(1.7), Kind::vpot, 1, 0, 0x47}}, {}};
    EXPECT_THAT(turns(), IsEmpty());
}

TEST_F(WaitingPresses, AreBesideTheTurnsOfAPanSeek) {
    const WireAction click{at(1), Kind::vpot, 3, 0, 0x41};
    const WireAction burst{at(1), Kind::vpot, 3, 0, 0x47};
    wires = {{}, {click}};
    EXPECT_THAT(turns(), SizeIs(1));
    requests.panSeeks = {{at(0), 3}};
    EXPECT_THAT(turns(), SizeIs(1)); // on another surface
    requests.panSeeks = {{at(0), 11}};
    EXPECT_THAT(turns(), IsEmpty());
    wires = {{}, {burst}};
    EXPECT_THAT(turns(), SizeIs(1));
}

TEST_F(WaitingPresses, EndAfter60MillisecondsOrWithTheBeginningOfAJob) {
    wires = {{edge(1, 2, 2, 1), edge(1.06, 2, 2, 0)}};
    EXPECT_THAT(ends(), IsEmpty());
    wires = {{edge(1, 2, 2, 1), edge(1.07, 2, 2, 0)}};
    EXPECT_THAT(ends(), SizeIs(2));
    wires = {{edge(1, 2, 2, 1)}};
    EXPECT_THAT(ends(), SizeIs(1));
    wires = {{edge(1, 2, 2, 1), edge(1.03, 2, 2, 0)}};
    EXPECT_THAT(ends(), SizeIs(2));
    job(1.03, 2);
    EXPECT_THAT(ends(), IsEmpty());
    wires = {{edge(1, 2, 2, 1), edge(1, 2, 2, 1), edge(1.03, 2, 2, 0)}};
    EXPECT_THAT(ends(), IsEmpty());
    wires = {{edge(1, 2, 2, 1), edge(1.04, 2, 2, 1), edge(1.03, 2, 2, 0)}};
    EXPECT_THAT(ends(), SizeIs(1));
}

} // namespace
} // namespace lumbrine::simulation
