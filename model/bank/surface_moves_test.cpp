// Moving the surfaces and waiting for them, press by press and millisecond by millisecond.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

// Surfaces without a heartbeat, and nothing shown on them so far.
class SurfaceMovesTest : public ModelTest {
protected:
    SurfaceMovesTest() {
        bench.parts().surfaces.startSurfaces();
        bench.run(1s);
        bench.mark();
    }

    // How long the job takes on a background thread.
    Duration timed(const std::function<void()>& job) {
        const TimePoint begin = world.runtime.now();
        std::optional<TimePoint> end;
        world.runtime.background(Priority::normal, [&] {
            job();
            end = world.runtime.now();
        });
        EXPECT_TRUE(world.runtime.runUntil([&end] { return end.has_value(); }, 300s));
        return end.value_or(distantPast) - begin;
    }

    // A name now and again, each another than before.
    void changeNamesEvery(Duration interval) {
        changes = world.runtime.repeatOnMain(
            interval, [this, count = 0]() mutable { bench.surfaceA.name(0, std::to_string(1000 + count++ % 9000)); });
    }

    void nameAfter(Duration delay) {
        world.runtime.postMainAfter(delay, [this] { bench.surfaceA.name(0, "Kick"); });
    }

    void pressAndLook() {
        const SurveyedBank before{.names = moves.snapshotWindow(), .faders = {}};
        moves.press(bank_port::bankForward);
        seen = moves.lookAfterPress(before).names;
    }

    // What was pressed and let go, without the zones.
    Lines ports() {
        Lines lines;
        for (const std::string& line : bench.heardOn(bench.surfaceA))
            if (line.find("B0 2F") != std::string::npos) lines.push_back(line);
        return lines;
    }

    SurfaceMoves& moves = bench.parts().moves;
    TrackNames seen;
    std::unique_ptr<RepeatingTimer> changes;
};

// ---- Waiting

TEST_F(SurfaceMovesTest, AShortQuietWaitLasts120MillisecondsWhenNothingComes) {
    EXPECT_EQ(timed([this] { moves.shortQuietWait(); }), 120ms);
}

TEST_F(SurfaceMovesTest, AShortQuietWaitEndsMoreThan100MillisecondsAfterItsBeginning) {
    world.runtime.oversleep = 1ms; // each of its naps of 20 ms
    EXPECT_EQ(timed([this] { moves.shortQuietWait(); }), 105ms);
}

TEST_F(SurfaceMovesTest, AShortQuietWaitGivesUpAfterExactly450MillisecondsWhereItsNapsAllow) {
    world.runtime.oversleep = 2500us; // the 20th nap ends at 450 ms
    changeNamesEvery(50ms);
    EXPECT_EQ(timed([this] { moves.shortQuietWait(); }), 450ms);
}

TEST_F(SurfaceMovesTest, AShortQuietWaitEndsMoreThan80MillisecondsAfterTheLastName) {
    nameAfter(39ms);
    EXPECT_EQ(timed([this] { moves.shortQuietWait(); }), 120ms);
    nameAfter(40ms);
    EXPECT_EQ(timed([this] { moves.shortQuietWait(); }), 140ms);
    nameAfter(200ms);
    EXPECT_EQ(timed([this] { moves.shortQuietWait(); }), 120ms);
}

TEST_F(SurfaceMovesTest, AShortQuietWaitGivesUpAfter450Milliseconds) {
    changeNamesEvery(50ms);
    EXPECT_EQ(timed([this] { moves.shortQuietWait(); }), 460ms); // the first poll after it
}

TEST_F(SurfaceMovesTest, StillNamesNeedNoWait) {
    EXPECT_EQ(timed([this] { moves.waitForStillNames(1200ms, 6s); }), 0ms);
}

TEST_F(SurfaceMovesTest, NamesAreStillWhenTheyAreOlderThanAsked) {
    bench.surfaceA.name(0, "Kick");
    world.runtime.runUntilIdle();
    EXPECT_EQ(timed([this] { moves.waitForStillNames(150ms, 800ms); }), 200ms); // polled every 50 ms
}

TEST_F(SurfaceMovesTest, TheWaitForStillNamesIsLimited) {
    changeNamesEvery(50ms);
    bench.run(50ms);
    EXPECT_EQ(timed([this] { moves.waitForStillNames(150ms, 800ms); }), 800ms);
    EXPECT_EQ(timed([this] { moves.waitForStillNames(1200ms, 6s); }), 6s);
}

TEST_F(SurfaceMovesTest, AWindowIsStableWhenTwoLooksInARowAreAlike) {
    EXPECT_EQ(timed([this] { moves.stableWindow(); }), 120ms);
    nameAfter(100ms);
    EXPECT_EQ(timed([this] { moves.stableWindow(); }), 240ms);
}

TEST_F(SurfaceMovesTest, AWindowThatNeverRestsIsTakenAfterSixLooks) {
    changeNamesEvery(100ms);
    TrackNames window;
    EXPECT_EQ(timed([&] { window = moves.stableWindow(); }), 720ms);
    EXPECT_EQ(window[0], bench.state().published.strips[0].name);
}

TEST_F(SurfaceMovesTest, APressMayShowItsEffectFor1100Milliseconds) {
    EXPECT_EQ(timed([this] { pressAndLook(); }), 1110ms); // looked at every 20 ms
    nameAfter(1050ms);
    EXPECT_EQ(timed([this] { pressAndLook(); }), 1310ms); // a quiet wait and a stable window after it
    EXPECT_EQ(seen[0], "Kick");
}

// It may be a value, or the effect of what came before.
TEST_F(SurfaceMovesTest, ATextThatComesSoonerThanUsualIsNoEffectOfAPress) {
    const auto pressAndAwait = [this] {
        moves.press(bank_port::bankForward);
        moves.awaitEffect([] { return false; });
    };
    for (const std::string name : {"Kick", "Snr ", "Bass"}) {
        world.runtime.postMainAfter(300ms, [this, name] { bench.surfaceA.name(0, name); });
        timed(pressAndAwait);
    }
    world.runtime.postMainAfter(10ms, [this] { bench.surfaceA.name(1, "-3.5"); });
    world.runtime.postMainAfter(300ms, [this] { bench.surfaceA.name(0, "Vox "); });
    EXPECT_GE(timed(pressAndAwait), 300ms);
    EXPECT_EQ(moves.snapshotWindow()[0], "Vox");
}

TEST_F(SurfaceMovesTest, TheWindowHasAStripForEachThatIsShown) {
    timed([this] { EXPECT_THAT(moves.snapshotWindow(), testing::SizeIs(8)); });
    bench.state().published.winW = 16;
    timed([this] { EXPECT_THAT(moves.snapshotWindow(), testing::SizeIs(16)); });
}

// ---- Moving

class MoveWindowTest : public SurfaceMovesTest {
protected:
    MoveWindowTest() {
        bench.setTrackMap(numbers(20), -1); // where the surfaces are is seen by the names
        bench.learnThatTheHostIsQuick();
        bench.run(1s);
        bench.mark();
    }

    BankingHost host{bench, numbers(20)};
};

TEST_F(MoveWindowTest, PressesBanks120AndChannels75MillisecondsApart) {
    EXPECT_EQ(timed([this] { moves.moveWindow(12); }), 810ms);
    EXPECT_EQ(host.offset, 12);
    EXPECT_THAT(ports(), ElementsAre("120ms B0 2F 43", "150ms B0 2F 03", //
                                     "270ms B0 2F 42", "300ms B0 2F 02", //
                                     "375ms B0 2F 42", "405ms B0 2F 02", //
                                     "480ms B0 2F 42", "510ms B0 2F 02", //
                                     "585ms B0 2F 42", "615ms B0 2F 02"));
}

TEST_F(MoveWindowTest, DoesNotLookAtTheDisplaysInBetween) {
    host.deaf = true;
    timed([this] { moves.moveWindow(12); });
    EXPECT_THAT(ports(), testing::SizeIs(5 * 2));
}

TEST_F(MoveWindowTest, KeepsTheTargetWithinTheSession) {
    timed([this] { moves.moveWindow(100); });
    EXPECT_EQ(host.offset, 12);
    timed([this] { moves.moveWindow(-1); });
    EXPECT_EQ(host.offset, 0);
}

TEST_F(MoveWindowTest, WaitsTwiceAndPressesNothingWhereItIs) {
    EXPECT_EQ(timed([this] { moves.moveWindow(0); }), 240ms);
    EXPECT_THAT(ports(), IsEmpty());
}

TEST_F(MoveWindowTest, PressesNothingWhenThePositionIsUnknown) {
    bench.surfaceA.name(3, "????");
    bench.run(1s);
    EXPECT_EQ(timed([this] { moves.moveWindow(12); }), 240ms);
    EXPECT_THAT(ports(), IsEmpty());
}

TEST_F(MoveWindowTest, ReturnsAtOnceWithoutAMap) {
    bench.setTrackMap({}, -1);
    EXPECT_EQ(timed([this] { moves.moveWindow(12); }), 0ms);
}

TEST_F(MoveWindowTest, StopsAfter300Presses) {
    TrackNames map = numbers(20);
    map.resize(3000, "----");
    bench.setTrackMap(map, -1);
    host.deaf = true;
    timed([this] { moves.moveWindow(2992); });
    EXPECT_THAT(ports(), testing::SizeIs(300 * 2));
}

TEST_F(MoveWindowTest, ReliablyComesBackAtOnceWhenItHasArrived) {
    EXPECT_EQ(timed([this] { moves.moveWindowReliably(8); }), 390ms);
    EXPECT_EQ(host.offset, 8);
}

TEST_F(MoveWindowTest, ReliablyLooksWhereItIsOnceTheNamesAreOlderThan150Milliseconds) {
    world.runtime.postMainAfter(140ms, [this] { host.show(); });
    EXPECT_EQ(timed([this] { moves.moveWindowReliably(0); }), 340ms); // polled every 50 ms from 240 ms on
}

TEST_F(MoveWindowTest, ReliablyWaitsNoLongerThan800MillisecondsForThat) {
    const auto again = world.runtime.repeatOnMain(50ms, [this] { host.show(); });
    bench.run(50ms);
    EXPECT_EQ(timed([this] { moves.moveWindowReliably(0); }), 2 * 460ms + 800ms);
}

TEST_F(MoveWindowTest, ReliablyTakesTheEndOfTheSessionForATargetBeyondIt) {
    timed([this] { moves.moveWindow(12); });
    EXPECT_EQ(timed([this] { moves.moveWindowReliably(100); }), 240ms);
}

TEST_F(MoveWindowTest, ReliablyMakesUpForALostPress) {
    host.deaf = true;
    world.runtime.postMainAfter(200ms, [this] { host.deaf = false; });
    timed([this] { moves.moveWindowReliably(8); });
    EXPECT_EQ(host.offset, 8);
    EXPECT_THAT(ports(), testing::SizeIs(2 * 2));
}

TEST_F(MoveWindowTest, ReliablyTriesFourTimes) {
    host.deaf = true;
    EXPECT_EQ(timed([this] { moves.moveWindowReliably(8); }),
              3 * (390ms + 100ms) + 120ms + 1110ms); // to the last press, which may be late
    EXPECT_THAT(ports(), testing::SizeIs(4 * 2));
}

} // namespace
} // namespace lumbrine
