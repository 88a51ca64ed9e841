// Pro Tools and its two surfaces come and go.
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"
#include "remote/command_builder.h"
#include "remote/testing/in_words.h"
#include "tests/studio/studio.h"

namespace lumbrine {
namespace {

// ---- Pings that get lost

// Pings every second, the last of them at `lastPing` after a tick, then none for `pause`, then again. When Pro Tools
// was taken for gone and when it was back, in milliseconds after that last ping. Ticks are 400 ms apart.
Lines comingsAndGoings(Duration lastPing, Duration pause) {
    ModelWorld world;
    ModelBench bench(world);
    bench.start();
    bench.setTrackMap({"x"}, 0); // so that no scan is due
    bench.run(100ms + lastPing); // the first tick is 100 ms away
    for (int i = 0; i < 4; ++i) {
        bench.surfaceA.ping();
        bench.run(1s);
    }
    bench.surfaceA.ping(); // ten ticks after the first
    const TimePoint last = world.runtime.now();

    Lines changes;
    bool connected = bench.model->published().huiConnected;
    bench.model->onChange([&] {
        if (std::exchange(connected, bench.model->published().huiConnected) == connected) return;
        const auto after = std::chrono::duration_cast<std::chrono::milliseconds>(world.runtime.now() - last);
        changes.push_back((connected ? "back " : "gone ") + std::to_string(after.count()));
    });
    bench.run(pause);
    bench.surfaceA.pingEverySecond();
    bench.run(3s);
    return changes;
}

TEST(LostPings, AreNotNoticedFor1900Milliseconds) {
    for (Duration lastPing = 0ms; lastPing < 400ms; lastPing += 10ms)
        EXPECT_THAT(comingsAndGoings(lastPing, 1900ms), IsEmpty()) << inSeconds(lastPing);
}

TEST(LostPings, AreNoticedFor2100MillisecondsByATickInTheLast100) {
    int noticed = 0;
    for (Duration lastPing = 5ms; lastPing < 400ms; lastPing += 10ms) {
        const Lines changes = comingsAndGoings(lastPing, 2100ms);
        if (changes.empty()) continue;
        ++noticed;
        // The tick that misses Pro Tools, and the one that finds it again.
        const auto gone = std::to_string(2400 - lastPing / 1ms);
        const auto back = std::to_string(2800 - lastPing / 1ms);
        EXPECT_THAT(changes, ElementsAre("gone " + gone, "back " + back)) << inSeconds(lastPing);
    }
    EXPECT_EQ(noticed, 10);
}

class LostPingsTest : public ModelTest {
protected:
    LostPingsTest() {
        bench.start();
        bench.setTrackMap({"x"}, 0); // so that no scan is due
        bench.state().published.strips[0].name = "x";
        bench.run(100ms); // on a tick
        bench.surfaceA.pingEverySecond();
        bench.run(4s); // ten ticks
    }

    // The last ping was 0 s ago and the next comes in 2.1 s; the tick that misses it is 2.0 s away.
    void losePings() {
        bench.surfaceA.stopPinging();
        bench.mark();
        bench.lines.clear();
        bench.run(2100ms);
        bench.surfaceA.pingEverySecond();
    }
};

TEST_F(LostPingsTest, BeginANewConnectionWithPansOnTheLeft) {
    bench.parts().pan.setPanMode(true);
    losePings();
    bench.run(1600ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA),
                ElementsAre("3200ms B0 0F 0B", "3200ms B0 2F 47", "3260ms B0 0F 0B", "3260ms B0 2F 07",
                            "3320ms B0 0F 0B", "3320ms B0 2F 42", "3380ms B0 0F 0B", "3380ms B0 2F 02"));
    EXPECT_FALSE(bench.model->published().panRight);
}

TEST_F(LostPingsTest, TakeTheTicksOfAStuckPositionBack) {
    bench.setTrackMap({"x"}, -1);
    bench.state().published.strips[0].name = "y";
    bench.run(2s);
    EXPECT_EQ(bench.state().scans.locateStuckTicks, 5);
    losePings();
    EXPECT_EQ(bench.state().scans.locateStuckTicks, 0);
    bench.run(300ms); // the tick that finds Pro Tools again
    EXPECT_EQ(bench.state().scans.locateStuckTicks, 1);
}

TEST_F(LostPingsTest, PutOffTheScanOfASessionWithoutAMap) {
    bench.setTrackMap({}, -1);
    bench.state().scans.lastAutoCalibrationAt = world.runtime.now(); // none is due for 10 s
    bench.run(8s);
    losePings(); // the pings come again from 10.1 s on
    bench.run(2s);
    EXPECT_FALSE(bench.model->published().calibrating()); // at 12.0 s
    bench.run(300ms);
    EXPECT_TRUE(bench.model->published().calibrating());
}

// ---- Two surfaces

TEST(SurfaceB, DoesNothingAlone) {
    Studio studio(numberedTracks(40), {.surfaces = 2, .grabPortsAfter = 100ms});
    studio.proTools->silence(0, 60s);
    const auto phone = studio.bench.phone("192.168.1.7");
    for (int i = 0; i < 60; ++i) {
        phone->send(remote::helloCommand(std::nullopt));
        studio.run(1s);
        EXPECT_FALSE(studio.shown().huiConnected);
        EXPECT_EQ(studio.shown().winW, 8);
    }
    EXPECT_THAT(studio.bench.surfaceA.tape.takeBytes(), IsEmpty());
    EXPECT_THAT(studio.bench.surfaceB.tape.takeBytes(), IsEmpty());
    EXPECT_THAT(displaysOf(studio.shown().session), IsEmpty());
    EXPECT_THAT(remote::inWords(studio.bench.heardBy(*phone, 0x16)),
                testing::Each(testing::EndsWith("bank first=unknown tracks=0 strips=8")));
    EXPECT_EQ(studio.logged("✓ Second surface connected → 16-ch window"), 0);

    ASSERT_TRUE(studio.mapSession(30s)); // A has come
    EXPECT_EQ(studio.shown().winW, 16);
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(40));
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

// Either surface and sometimes both fall silent for a little more than counts, for about two minutes.
void flap(Studio& studio) {
    for (int i = 0; i < 40; ++i) {
        studio.proTools->silence(i % 3 == 0 ? 0 : 1, 2300ms + i * 10ms);
        if (i % 5 == 0) studio.proTools->silence(1 - i % 2, 3s);
        studio.run(3100ms - i % 7 * 100ms);
    }
}

TEST(TwoSurfaces, ThatFlapLeaveTheMapAndATruePosition) {
    Studio studio(numberedTracks(40), {.surfaces = 2});
    ASSERT_TRUE(studio.mapSession(30s));
    studio.proTools->scrollTo(20);
    flap(studio);
    studio.run(5s);
    ASSERT_TRUE(studio.untilQuiet(20s));
    EXPECT_EQ(studio.shown().winW, 16);
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(40));
    EXPECT_EQ(studio.hostOffset(), 20);
    EXPECT_EQ(studio.shown().bankOffset, 20);
    const long lost = studio.logged("Second surface lost → back to 8-ch window");
    EXPECT_GE(lost, 10);
    EXPECT_EQ(studio.logged("✓ Second surface connected → 16-ch window"), lost + 1);
}

// A scan during which the window changes its width joins names of different windows. The client may ask for another
// scan.
TEST(TwoSurfaces, ThatFlapDuringAScanNeedAnotherOne) {
    Studio studio(numberedTracks(40), {.surfaces = 2});
    flap(studio);
    studio.run(5s);
    ASSERT_TRUE(studio.untilQuiet(60s));
    EXPECT_EQ(studio.shown().winW, 16);
    studio.parts().calibration.calibrateBanks(true);
    ASSERT_TRUE(studio.untilQuiet(30s));
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(40));
    EXPECT_EQ(studio.shown().bankOffset, studio.hostOffset());
}

} // namespace
} // namespace lumbrine
