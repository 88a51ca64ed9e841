// The checker of fingers sees what it is there for.
#include "tests/simulation/finger_checker.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class Fingers : public testing::Test {
protected:
    void ask(double time, Bytes bytes) { received.push_back({at(time), "a", std::move(bytes)}); }
    void askTouch(double time) { ask(time, {0x01, 0x02, 0x03}); }
    void askRelease(double time) { ask(time, {0x01, 0x03, 0x03}); }
    void askMove(double time) { ask(time, {0x01, 0x01, 0x03, 0x20, 0x00}); }

    void touch(double time) { wire.push_back(edge(time, 3, 0, 1)); }
    void release(double time) { wire.push_back(edge(time, 3, 0, 0)); }
    void move(double time) { wire.push_back({at(time), WireAction::Kind::fader, 3, 0, 8192}); }

    // Seen by looks that are 20 ms apart.
    void job(double begin, double end) {
        JobRun run;
        run.job = Job::seek;
        run.before = at(begin - 0.01);
        run.first = at(begin + 0.01);
        run.last = at(end - 0.01);
        run.after = at(end + 0.01);
        runs.push_back(run);
    }

    std::vector<std::string> check(const Pauses& pauses = {}) const {
        return checkFingers(wire, 0, acceptedOf(received), Closings(runs, pauses), pauses);
    }

    std::vector<ReceivedDatagram> received;
    std::vector<WireAction> wire;
    std::vector<JobRun> runs;
};

TEST_F(Fingers, MoveWhatIsAskedForAtOnceAndOnce) {
    askMove(1);
    EXPECT_THAT(check(), Contains(HasSubstr("move lost")));
    move(1);
    EXPECT_THAT(check(), IsEmpty());
    move(1);
    EXPECT_THAT(check(), Contains(HasSubstr("nobody asked for")));
    wire = {};
    move(1.001);
    EXPECT_THAT(check(), SizeIs(2));
}

TEST_F(Fingers, LetGoOfWhatIsDownThoughAnotherReleaseCameInTheSamePause) {
    askRelease(1.2); // of nothing, so that it need not go out
    askTouch(1.4);
    askRelease(1.6);
    touch(2);
    release(2);
    const Pauses pause({{at(1), at(2)}});
    EXPECT_THAT(check(pause), IsEmpty());
    askTouch(2.4);
    askRelease(2.6);
    touch(2.4);
    EXPECT_THAT(check(pause), ElementsAre(HasSubstr("release lost")));
}

TEST_F(Fingers, TouchAndLetGo) {
    askTouch(1);
    askRelease(2);
    EXPECT_THAT(check(), SizeIs(2));
    touch(1);
    release(2);
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(Fingers, ThatAJobHasMetAreNotTouchedAnewByARepeatedTouch) {
    askTouch(1);
    touch(1);
    askTouch(1.5);
    touch(1.5);
    job(1.7, 1.9);
    askTouch(2);
    EXPECT_THAT(check(), IsEmpty());
    touch(2);
    EXPECT_THAT(check(), ElementsAre(HasSubstr("of a finger that a job has met")));
}

TEST_F(Fingers, AreExcusedBesideAJobAlone) {
    askTouch(1);
    askMove(1.5);
    job(0.9, 2);
    EXPECT_THAT(check(), IsEmpty());
    askMove(2.5); // without another touch
    EXPECT_THAT(check(), IsEmpty());
    askTouch(3);
    askMove(3.5);
    EXPECT_THAT(check(), SizeIs(2));
}

TEST_F(Fingers, ThatNeverTouchedAreNotExcusedByAFormerJob) {
    job(0.9, 2);
    askMove(2.5);
    EXPECT_THAT(check(), Contains(HasSubstr("move lost")));
}

TEST_F(Fingers, SendNothingDuringAJob) {
    job(0.9, 2);
    askTouch(1.5);
    touch(1.5);
    EXPECT_THAT(check(), Contains(HasSubstr("while a job has the surfaces")));
}

TEST_F(Fingers, ThatAJobHasMetMoveNothingUntilTheyTouchAgain) {
    askTouch(1);
    touch(1);
    job(2, 3);
    askMove(3.5);
    EXPECT_THAT(check(), IsEmpty());
    move(3.5);
    EXPECT_THAT(check(), Contains(HasSubstr("of a finger that a job has met")));
    askTouch(4);
    askMove(4.5);
    wire = {};
    touch(1);
    touch(4);
    move(4.5);
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(Fingers, ThatAJobHasMetMayBeLiftedBeforeADoubledMoveThatGoesOutInTheSamePause) {
    askTouch(1);
    touch(1);
    job(2, 3);
    askMove(3.5);
    askRelease(3.51);
    askMove(3.52);
    move(3.52);
    const Pauses pauses({{at(3.4), at(3.6)}});
    EXPECT_THAT(check(pauses), IsEmpty());
    wire.pop_back();
    move(3.5);
    EXPECT_THAT(check(pauses), Contains(HasSubstr("of a finger that a job has met")));
}

TEST_F(Fingers, ThatCameDuringAJobMoveNothingAfterIt) {
    job(1, 3);
    askTouch(2);
    askMove(3.5);
    EXPECT_THAT(check(), IsEmpty());
    move(3.5);
    EXPECT_THAT(check(), Contains(HasSubstr("of a finger that a job has met")));
}

TEST_F(Fingers, OfAnotherOwnerAreNotMetByFormerJobs) {
    askTouch(1);
    touch(1);
    job(2, 3);
    received.push_back({at(3.2), "b", {0x01, 0x25}});
    received.push_back({at(3.5), "b", {0x01, 0x01, 0x03, 0x20, 0x00}});
    EXPECT_THAT(check(), Contains(HasSubstr("move lost")));
    move(3.5);
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(Fingers, OfASilentClientAreForgotten) {
    askTouch(1);
    touch(1);
    job(2, 3);
    askMove(8);
    EXPECT_THAT(check(), Contains(HasSubstr("move lost")));
    move(8);
    EXPECT_THAT(check(), IsEmpty());
}

} // namespace
} // namespace lumbrine::simulation
