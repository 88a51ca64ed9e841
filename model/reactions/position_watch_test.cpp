// When the receiver decides by itself that the banks must be scanned.
#include "model/testing/model_test.h"

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
        state.mirror.nameCache[7] = "x";
    }

    void watchTimes(int times) {
        for (int i = 0; i < times; ++i)
            watch.watchStuckPosition();
    }
};

TEST_F(PositionWatchTest, TheTwelfthTickWithoutAMatchThrowsTheMapAway) {
    watchTimes(11);
    EXPECT_EQ(state.bank.locateStuckTicks, 11);
    EXPECT_THAT(bench.lines, IsEmpty());
    EXPECT_THAT(state.published.trackMap, testing::SizeIs(2));
    watchTimes(1);
    EXPECT_EQ(state.bank.locateStuckTicks, 0);
    EXPECT_EQ(bench.lines.at(0), "⚠ Position match keeps failing — rebuilding the track map");
    EXPECT_THAT(state.published.trackMap, IsEmpty());
    EXPECT_EQ(state.bank.lastAutoCalibrationAt, world.runtime.now());
}

TEST_F(PositionWatchTest, AnyTickThatIsNotStuckStartsTheCountAnew) {
    watchTimes(11);
    state.published.bankOffset = 0;
    watchTimes(1);
    EXPECT_EQ(state.bank.locateStuckTicks, 0);
    state.published.bankOffset = -1;
    watchTimes(11);
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(PositionWatchTest, APositionIsNotStuckWhileItCannotBeKnown) {
    for (bool* reason : {&state.bank.seeking, &state.bank.groupApplying, &state.published.calibrating,
                         &state.mirror.transportPlaying, &state.mirror.transportRecording}) {
        *reason = true;
        watchTimes(20);
        EXPECT_EQ(state.bank.locateStuckTicks, 0);
        *reason = false;
    }
    state.published.huiConnected = false;
    watchTimes(20);
    state.published.huiConnected = true;
    state.published.trackMap.clear();
    watchTimes(20);
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(PositionWatchTest, ABlankWindowIsNotStuck) {
    state.mirror.nameCache[7] = "  ";
    state.mirror.nameCache[8] = "x"; // not shown in a window of 8
    watchTimes(20);
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST(PositionWatchInJapanese, TellsThatTheMapIsRebuilt) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.setTrackMap({"a", "b"}, -1);
    bench.state().published.huiConnected = true;
    bench.state().mirror.nameCache[0] = "x";
    for (int i = 0; i < 12; ++i)
        bench.parts().position.watchStuckPosition();
    EXPECT_EQ(bench.lines.at(0), "⚠ 位置照合が復帰しないため、トラック地図を作り直します");
}

// ---- No map

class MissingMapTest : public PositionWatchTest {
protected:
    MissingMapTest() {
        state.published.trackMap.clear();
        state.presence.firstPingAt = world.runtime.now() - 2001ms;
        state.bank.lastAutoCalibrationAt = world.runtime.now() - 10001ms;
    }

    bool scanIsRequested() {
        const TimePoint before = state.bank.lastAutoCalibrationAt;
        watch.watchMissingMap();
        return state.bank.lastAutoCalibrationAt != before;
    }
};

TEST_F(MissingMapTest, ASessionWithoutAMapIsScanned) {
    EXPECT_TRUE(scanIsRequested());
    EXPECT_EQ(state.bank.lastAutoCalibrationAt, world.runtime.now());
    EXPECT_FALSE(scanIsRequested());
}

TEST_F(MissingMapTest, NothingIsScannedInTheFirstTwoSecondsOfPings) {
    state.presence.firstPingAt = world.runtime.now() - 2000ms;
    EXPECT_FALSE(scanIsRequested());
}

TEST_F(MissingMapTest, ScansAreMoreThanTenSecondsApart) {
    state.bank.lastAutoCalibrationAt = world.runtime.now() - 10000ms;
    EXPECT_FALSE(scanIsRequested());
}

TEST_F(MissingMapTest, NothingIsScannedWithoutNeed) {
    state.published.huiConnected = false;
    EXPECT_FALSE(scanIsRequested());
    state.published.huiConnected = true;
    state.published.calibrating = true;
    EXPECT_FALSE(scanIsRequested());
    state.published.calibrating = false;
    state.published.trackMap = {"a"};
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
    bench.state().mirror.nameCache[0] = "x";
    bench.run(11 * 400ms);
    EXPECT_EQ(bench.state().bank.locateStuckTicks, 11);
    bench.run(399ms);
    EXPECT_THAT(bench.model->published().trackMap, testing::SizeIs(2));
    bench.run(1ms);
    EXPECT_THAT(bench.model->published().trackMap, IsEmpty());
}

} // namespace
} // namespace lumbrine
