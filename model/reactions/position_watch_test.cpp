// When the receiver decides by itself that the banks must be scanned.
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

class PositionWatchTest : public ModelTest {
protected:
    PositionWatch& watch = bench.parts().position;
    ReceiverState& state = bench.state();

    // Connected, with a map, and a window that does not fit it.
    PositionWatchTest() {
        bench.run(20s);
        bench.setTrackMap({"a", "b"}, -1);
        state.published.huiConnected = true;
        state.published.strips[7].name = "x";
    }

    void watchTimes(int times) {
        for (int i = 0; i < times; ++i)
            watch.watchStuckPosition();
    }
};

TEST_F(PositionWatchTest, TheTwelfthTickWithoutAMatchThrowsTheMapAway) {
    watchTimes(11);
    EXPECT_EQ(state.scans.locateStuckTicks, 11);
    EXPECT_THAT(bench.lines, IsEmpty());
    EXPECT_THAT(displaysOf(state.published.session), testing::SizeIs(2));
    watchTimes(1);
    EXPECT_EQ(state.scans.locateStuckTicks, 0);
    EXPECT_EQ(bench.lines.at(0), "⚠ Position match keeps failing — rebuilding the track map");
    EXPECT_THAT(displaysOf(state.published.session), IsEmpty());
    EXPECT_EQ(state.scans.lastAutoCalibrationAt, world.runtime.now());
}

TEST_F(PositionWatchTest, AnyTickThatIsNotStuckStartsTheCountAnew) {
    watchTimes(11);
    state.published.bankOffset = 0;
    watchTimes(1);
    EXPECT_EQ(state.scans.locateStuckTicks, 0);
    state.published.bankOffset = -1;
    watchTimes(11);
    EXPECT_THAT(bench.lines, IsEmpty());
}

// A scan would take the tracks away from under the finger.
TEST_F(PositionWatchTest, AStuckPositionWaitsForTheClientsHand) {
    state.published.strips[3].movedByClient = world.runtime.now() - 1499ms;
    watchTimes(20);
    EXPECT_THAT(bench.lines, IsEmpty());
    EXPECT_FALSE(state.published.session.empty());
    state.published.strips[3].movedByClient = world.runtime.now() - 1500ms;
    watchTimes(1);
    EXPECT_FALSE(bench.lines.empty());
    EXPECT_TRUE(state.published.session.empty());
}

TEST_F(PositionWatchTest, APositionIsNotStuckWhileItCannotBeKnown) {
    for (bool* running : {&state.transportPlaying, &state.transportRecording}) {
        *running = true;
        watchTimes(20);
        EXPECT_EQ(state.scans.locateStuckTicks, 0);
        *running = false;
    }
    for (const BankUser user : {BankUser::seek, BankUser::scan, BankUser::walk}) {
        state.published.banksUsedBy = user;
        watchTimes(20);
        EXPECT_EQ(state.scans.locateStuckTicks, 0);
    }
    state.published.banksUsedBy.reset();
    state.published.huiConnected = false;
    watchTimes(20);
    state.published.huiConnected = true;
    state.published.session = {};
    watchTimes(20);
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(PositionWatchTest, ABlankWindowIsNotStuck) {
    state.published.strips[7].name = "  ";
    state.published.strips[8].name = "x"; // not shown in a window of 8
    watchTimes(20);
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST(PositionWatchInJapanese, TellsThatTheMapIsRebuilt) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.setTrackMap({"a", "b"}, -1);
    bench.state().published.huiConnected = true;
    bench.state().published.strips[0].name = "x";
    for (int i = 0; i < 12; ++i)
        bench.parts().position.watchStuckPosition();
    EXPECT_EQ(bench.lines.at(0), "⚠ 位置照合が復帰しないため、トラック地図を作り直します");
}

TEST_F(PositionWatchTest, AWindowAtSeveralPlacesIsNotStuckAfterTwoScansThatAgree) {
    bench.setTrackMap({"x", "x", "y"}, -1);
    state.published.winW = 1;
    state.published.strips[0].name = "x";
    state.scans.repeated = true;
    watchTimes(20);
    EXPECT_THAT(bench.lines, IsEmpty());
    state.scans.repeated = false;
    watchTimes(12);
    EXPECT_TRUE(state.published.session.empty());
}

TEST_F(PositionWatchTest, AWindowThatTwoScansCouldNotPlaceIsStuckAgainOnceItShowsOtherNames) {
    state.scans.repeated = true;
    state.scans.endedOn = bench.parts().bankMap.window();
    watchTimes(20);
    EXPECT_THAT(bench.lines, IsEmpty());
    state.published.strips[0].name = "z";
    watchTimes(12);
    EXPECT_TRUE(state.published.session.empty());
}

// ---- No map

class MissingMapTest : public PositionWatchTest {
protected:
    MissingMapTest() {
        state.published.session = {};
        state.presence.firstPingAt = world.runtime.now() - 2001ms;
        state.scans.lastAutoCalibrationAt = world.runtime.now() - 10001ms;
    }

    bool scanIsRequested() {
        const TimePoint before = state.scans.lastAutoCalibrationAt;
        watch.watchMissingMap();
        return state.scans.lastAutoCalibrationAt != before;
    }
};

TEST_F(MissingMapTest, ASessionWithoutAMapIsScanned) {
    EXPECT_TRUE(scanIsRequested());
    EXPECT_EQ(state.scans.lastAutoCalibrationAt, world.runtime.now());
    EXPECT_FALSE(scanIsRequested());
}

TEST_F(MissingMapTest, NothingIsScannedInTheFirstTwoSecondsOfPings) {
    state.presence.firstPingAt = world.runtime.now() - 2000ms;
    EXPECT_FALSE(scanIsRequested());
}

TEST_F(MissingMapTest, ScansAreMoreThanTenSecondsApart) {
    state.scans.lastAutoCalibrationAt = world.runtime.now() - 10000ms;
    EXPECT_FALSE(scanIsRequested());
}

TEST_F(MissingMapTest, ASessionWithoutTracksIsScannedAgainWhenANameAppears) {
    state.scans.sawNothing = true;
    state.published.strips[7].name = "";
    EXPECT_FALSE(scanIsRequested());
    state.published.strips[7].name = "x";
    state.scans.lastAutoCalibrationAt = world.runtime.now() - 1ms;
    EXPECT_TRUE(scanIsRequested());
}

TEST_F(MissingMapTest, ASessionWithoutTracksIsScannedAgainWhenTheTrackListHasOne) {
    state.scans.sawNothing = true;
    state.published.strips[7].name = "";
    bench.parts().metadata.takeList({{.name = "歌"}});
    EXPECT_TRUE(scanIsRequested());
}

TEST_F(MissingMapTest, NothingIsScannedWithoutNeed) {
    state.published.huiConnected = false;
    EXPECT_FALSE(scanIsRequested());
    state.published.huiConnected = true;
    state.published.banksUsedBy = BankUser::scan;
    EXPECT_FALSE(scanIsRequested());
    state.published.banksUsedBy.reset();
    state.published.session = Session::of({"a"});
    EXPECT_FALSE(scanIsRequested());
}

// ---- In the tick

TEST(PositionWatch, IsLookedAtInEveryTick) {
    ModelWorld world;
    ModelBench bench(world);
    bench.start();
    bench.surfaceA.pingEverySecond();
    bench.run(100ms); // the first tick
    bench.setTrackMap({"a", "b"}, -1);
    bench.state().published.strips[0].name = "x";
    bench.run(11 * 400ms);
    EXPECT_EQ(bench.state().scans.locateStuckTicks, 11);
    bench.run(399ms);
    EXPECT_THAT(displaysOf(bench.model->published().session), testing::SizeIs(2));
    bench.run(1ms);
    EXPECT_THAT(displaysOf(bench.model->published().session), IsEmpty());
}

} // namespace
} // namespace lumbrine
