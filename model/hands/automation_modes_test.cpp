// Reading and setting automation modes through the strips' displays.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"

#include <algorithm>

namespace lumbrine {
namespace {

class AutomationModesTest : public OwnedModelTest {
protected:
    AutomationModesTest() {
        bench.surfaceA.pingEverySecond();
        sendNothing();
        bench.run(1500ms); // connected, and its pan side reset
        bench.state().published.banksUsedBy = BankUser::seek;
        bench.run(1s); // the tick's own probe has ended, and none follows
        bench.state().published.banksUsedBy.reset();
        bench.surfaceA.stopPinging();
        markAll();
    }

    Lines heardOnA() { return bench.heardOn(bench.surfaceA); }

    AutomationModes& automation = bench.parts().automation;
    ReceiverState& state = bench.state();
};

TEST_F(AutomationModesTest, AProbeHoldsTheAutoSwitchFor150Milliseconds) {
    automation.pollAutoMode(*Strip::of(3));
    bench.run(149ms);
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 03", "0ms B0 2F 44"));
    bench.run(1ms);
    EXPECT_THAT(heardOnA(), ElementsAre("150ms B0 0F 03", "150ms B0 2F 04"));
}

TEST_F(AutomationModesTest, AProbeOfTheSecondSurfaceGoesThere) {
    automation.pollAutoMode(*Strip::of(11));
    bench.run(150ms);
    EXPECT_THAT(heardOnA(), IsEmpty());
    EXPECT_THAT(bench.heardOn(bench.surfaceB),
                ElementsAre("0ms B0 0F 03", "0ms B0 2F 44", "150ms B0 0F 03", "150ms B0 2F 04"));
}

TEST_F(AutomationModesTest, TheModeThatTheDisplayShowsIsToldToTheClient) {
    automation.pollAutoMode(*Strip::of(3));
    bench.run(100ms);
    bench.surfaceA.name(3, "TLch");
    bench.run(50ms);
    EXPECT_EQ(state.published.strips[3].mode, 11);
    EXPECT_THAT(heard(0x1C), ElementsAre("150ms 01 1C 00 00 00 0B 00 00 00 00"));
}

TEST_F(AutomationModesTest, AModeThatIsKnownIsNotToldAgain) {
    state.published.strips[3].mode = 1;
    bench.parts().mirror.sendAllAutoModes();
    settle();
    phone->tape.clear();
    automation.autoModeUpdate(*Strip::of(3), 1);
    EXPECT_THAT(heard(0x1C), IsEmpty());
}

TEST_F(AutomationModesTest, AProbeThatReadsNothingStoresNothing) {
    state.published.strips[3].mode = 1;
    automation.pollAutoMode(*Strip::of(3));
    bench.run(1ms); // it has begun
    bench.surfaceA.name(3, "Kick");
    bench.run(149ms);
    EXPECT_EQ(state.published.strips[3].mode, 1);
    EXPECT_THAT(heard(0x1C), IsEmpty());
}

TEST_F(AutomationModesTest, ATextAfterTheProbeIsTooLate) {
    automation.pollAutoMode(*Strip::of(3));
    bench.run(150ms);
    bench.surfaceA.name(3, "Read");
    bench.run(1ms);
    EXPECT_EQ(state.published.strips[3].mode, 0);
}

// ---- The mode in the place of the name

TEST_F(AutomationModesTest, AProbeChangesNoName) {
    bench.surfaceA.name(3, "Kick");
    settle();
    markAll();
    automation.pollAutoMode(*Strip::of(3));
    bench.run(50ms);
    bench.surfaceA.name(3, "Read");
    bench.run(100ms); // AUTO comes up
    bench.surfaceA.name(3, "Kick");
    bench.run(300ms); // until shortly before the heartbeat
    EXPECT_EQ(state.published.strips[3].name, "Kick");
    EXPECT_EQ(state.published.strips[3].mode, 1);
    EXPECT_THAT(heard(0x10), IsEmpty());
}

TEST_F(AutomationModesTest, AModeThatComesSoonAfterAProbeChangesNoName) {
    bench.surfaceA.name(3, "Kick");
    settle();
    for (const std::string mode : {"Read", "T/L "}) {
        markAll();
        automation.pollAutoMode(*Strip::of(3));
        bench.run(200ms); // AUTO came up after 150 ms
        bench.surfaceA.name(3, mode);
        bench.run(150ms);
        bench.surfaceA.name(3, "Kick");
        bench.run(10ms);
        EXPECT_EQ(state.published.strips[3].name, "Kick");
        EXPECT_THAT(heard(0x10), testing::Each(testing::EndsWith("01 10 03 4B 69 63 6B"))); // of a resend
    }
}

TEST_F(AutomationModesTest, AWordThatIsNoKnownModeIsNoNameWhileAutoIsHeld) {
    bench.surfaceA.name(3, "Kick");
    settle();
    markAll();
    automation.pollAutoMode(*Strip::of(3));
    bench.run(50ms);
    bench.surfaceA.name(3, "Trim");
    bench.run(100ms);
    bench.surfaceA.name(3, "Kick");
    settle();
    EXPECT_THAT(heard(0x10), IsEmpty());
}

TEST_F(AutomationModesTest, ANameAfterTheModeOfAProbeIsShownAtOnce) {
    bench.surfaceA.name(3, "Kick");
    settle();
    automation.pollAutoMode(*Strip::of(3));
    bench.run(50ms);
    bench.surfaceA.name(3, "Read");
    bench.surfaceA.name(3, "Snr "); // the user has moved the banks
    settle();
    EXPECT_EQ(state.published.strips[3].name, "Snr");
}

TEST_F(AutomationModesTest, AModeThatStaysFor300MillisecondsAfterAProbeIsAName) {
    bench.surfaceA.name(3, "Kick");
    settle();
    automation.pollAutoMode(*Strip::of(3));
    bench.run(50ms);
    bench.surfaceA.name(3, "Read"); // what the track is called from now on
    bench.run(399ms);
    EXPECT_EQ(state.published.strips[3].name, "Kick");
    bench.run(1ms);
    EXPECT_EQ(state.published.strips[3].name, "Read");
    EXPECT_EQ(bench.parts().displays.age(), 0ms); // a job that moves the banks sees that they have not settled
}

TEST_F(AutomationModesTest, AModeOnAStripThatIsNotProbedIsAName) {
    automation.pollAutoMode(*Strip::of(3));
    bench.run(50ms);
    bench.surfaceA.name(4, "Read");
    settle();
    EXPECT_EQ(state.published.strips[4].name, "Read");
}

// ---- When probing is not allowed

TEST_F(AutomationModesTest, NothingIsProbedWhileSomethingElseNeedsTheSurfaces) {
    for (bool* obstacle : {&state.transportPlaying, &state.transportRecording, &state.published.strips[3].touched}) {
        *obstacle = true;
        automation.pollAutoMode(*Strip::of(3));
        settle();
        EXPECT_THAT(heardOnA(), IsEmpty());
        *obstacle = false;
    }
    for (const BankUser user : {BankUser::seek, BankUser::scan, BankUser::walk}) {
        state.published.banksUsedBy = user;
        automation.pollAutoMode(*Strip::of(3));
        settle();
        EXPECT_THAT(heardOnA(), IsEmpty());
    }
}

// Another fader than the strip's, too: a probe shows a mode where a name was, and Pro Tools is busy with it.
TEST_F(AutomationModesTest, NothingIsProbedWhileTheClientsHandIsOnAFader) {
    StripState& other = state.published.strips[9];
    other.touched = true;
    automation.pollAutoMode(*Strip::of(3));
    settle();
    EXPECT_THAT(heardOnA(), IsEmpty());
    other.touched = false;

    other.movedByClient = world.runtime.now() - 1499ms;
    automation.pollAutoMode(*Strip::of(3));
    settle();
    EXPECT_THAT(heardOnA(), IsEmpty());

    other.movedByClient = world.runtime.now() - 1500ms;
    automation.pollAutoMode(*Strip::of(3));
    settle();
    EXPECT_THAT(heardOnA(), testing::SizeIs(2)); // AUTO goes down
}

TEST_F(AutomationModesTest, NothingIsProbedWithoutProTools) {
    state.published.huiConnected = false;
    automation.pollAutoMode(*Strip::of(3));
    settle();
    EXPECT_THAT(heardOnA(), IsEmpty());
}

TEST_F(AutomationModesTest, NothingIsProbedUnderAFingerOnAnotherFader) {
    state.published.strips[4].touched = true;
    automation.pollAutoMode(*Strip::of(3));
    settle();
    EXPECT_THAT(heardOnA(), IsEmpty());
}

// ---- All strips

TEST_F(AutomationModesTest, AllStripsAreProbedOneAfterAnother) {
    state.published.winW = 16;
    state.presence.lastPing = state.presence.lastPingB = state.presence.lastPing.load() + 10s;
    automation.pollAllAutoModes();
    bench.run(16 * 150ms);
    const Lines a = heardOnA();
    const Lines b = bench.heardOn(bench.surfaceB);
    EXPECT_THAT(a, testing::Contains("0ms B0 0F 00"));
    EXPECT_THAT(a, testing::Contains("1050ms B0 0F 07"));
    EXPECT_THAT(b, testing::Contains("1200ms B0 0F 00"));
    EXPECT_THAT(b, testing::Contains("2400ms B0 0F 07"));
}

TEST_F(AutomationModesTest, AllStripsAreProbedAgainAfterMoreThanThreeSecondsOnly) {
    automation.pollAllAutoModes();
    const TimePoint first = state.lastAutoPollAll;
    EXPECT_EQ(first, world.runtime.now());
    bench.run(3s);
    automation.pollAllAutoModes();
    EXPECT_EQ(state.lastAutoPollAll, first);
    bench.run(1ms);
    automation.pollAllAutoModes();
    EXPECT_EQ(state.lastAutoPollAll, world.runtime.now());
}

TEST_F(AutomationModesTest, AskingTwiceQueuesTheProbesOnce) {
    automation.pollAllAutoModes();
    automation.pollAllAutoModes();
    bench.run(16 * 150ms);
    const auto ofStripZero = [](const std::string& line) { return line.ends_with("B0 0F 00"); };
    EXPECT_EQ(std::ranges::count_if(heardOnA(), ofStripZero), 2); // down and up
}

// ---- The LEDs of the AUTO keys

class AutoLedModesTest : public AutomationModesTest {
protected:
    AutoLedModesTest() {
        bench.surfaceA.pingEverySecond();
        bench.surfaceA.name(third.engineStrip(), "Kick");
        light(green);
        settle();
        automation.pollAutoMode(third);
        bench.run(100ms);
        bench.surfaceA.name(third.engineStrip(), "Read");
        bench.run(100ms);
        bench.surfaceA.name(third.engineStrip(), "Kick");
        run(1s);
    }

    // With a client that is there.
    void run(Duration time) {
        for (; time > 1s; time -= 1s) {
            sendNothing();
            bench.run(1s);
        }
        bench.run(time);
        markAll();
    }

    void light(std::uint8_t colour) { bench.surfaceA.send({0xB0, 0x0C, 0x03, 0xB0, 0x2C, colour}); }

    std::ptrdiff_t probesIn(Duration time) {
        std::ptrdiff_t probes = 0;
        for (; time > Duration::zero(); time -= 1s) {
            sendNothing();
            bench.run(std::min<Duration>(time, 1s));
            const auto isProbe = [](const std::string& line) { return line.ends_with("B0 2F 44"); };
            const Lines lines = heardOnA();
            for (std::size_t i = 1; i < lines.size(); ++i)
                probes += isProbe(lines[i]) && lines[i - 1].ends_with("B0 0F 03");
        }
        return probes;
    }

    static constexpr std::uint8_t green = 0x24;
    static constexpr std::uint8_t orange = 0x64;
    static constexpr std::uint8_t dark = 0x04;
    const Strip third = *Strip::of(3);
};

TEST_F(AutoLedModesTest, PausePollsOfAStripWhoseModeTheyTell) {
    EXPECT_EQ(probesIn(60s), 0);
    automation.pollAutoMode(third);
    EXPECT_EQ(probesIn(1s), 0);
}

TEST_F(AutoLedModesTest, AreFollowedByOneProbeWhenTheyContradict) {
    bench.run(6s); // no client, no other polls
    light(orange);
    settle();
    markAll();
    bench.run(1499ms);
    EXPECT_THAT(heardOnA(), testing::Not(testing::Contains(testing::EndsWith("B0 0F 03"))));
    bench.run(1ms);
    EXPECT_THAT(heardOnA(), testing::IsSupersetOf({"1500ms B0 0F 03", "1500ms B0 2F 44"}));
    bench.surfaceA.name(third.engineStrip(), "Tch ");
    bench.run(200ms);
    EXPECT_EQ(state.published.strip(third).mode, 2);
    bench.surfaceA.name(third.engineStrip(), "Kick");
    heardOnA();
    EXPECT_EQ(probesIn(20s), 0);
}

TEST_F(AutoLedModesTest, ThatNeverAgreeLeaveThePollsAsTheyAre) {
    automation.surfaceGone(SurfaceID::A);
    light(dark);
    EXPECT_GE(probesIn(20s), 2); // each strip every 9.6 s
}

// ---- Setting

TEST_F(AutomationModesTest, AModeIsSetWhileTheAutoSwitchIsHeld) {
    phone->send({0x01, 0x0F, 0x02, 0x05});
    bench.run(200ms);
    bench.surfaceA.name(2, "Tch ");
    bench.run(60ms);
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 02", "0ms B0 2F 44", "50ms B0 0F 18", "50ms B0 2F 45",
                                        "110ms B0 0F 18", "110ms B0 2F 05", "260ms B0 0F 02", "260ms B0 2F 04"));
    EXPECT_THAT(heard(0x1C), ElementsAre("260ms 01 1C 00 00 02 00 00 00 00 00"));
    EXPECT_THAT(bench.takeLines(), ElementsAre("← auto ch3 mode changed → touch"));
}

TEST_F(AutomationModesTest, AModeOfTheSecondSurfaceIsSetThere) {
    phone->send({0x01, 0x0F, 0x0F, 0x00});
    bench.run(260ms);
    EXPECT_THAT(heardOnA(), IsEmpty());
    EXPECT_THAT(bench.heardOn(bench.surfaceB),
                ElementsAre("0ms B0 0F 07", "0ms B0 2F 44", "50ms B0 0F 18", "50ms B0 2F 40", "110ms B0 0F 18",
                            "110ms B0 2F 00", "260ms B0 0F 07", "260ms B0 2F 04"));
    EXPECT_THAT(bench.takeLines(), ElementsAre("← auto ch16 mode changed → unknown"));
}

TEST_F(AutomationModesTest, ASettingThatReadsNothingNamesWhatWasKnown) {
    state.published.strips[2].mode = 5;
    phone->send({0x01, 0x0F, 0x02, 0x05});
    bench.run(260ms);
    EXPECT_THAT(bench.takeLines(), ElementsAre("← auto ch3 mode changed → off"));
}

TEST_F(AutomationModesTest, SettingsWaitForEachOther) {
    phone->send({0x01, 0x0F, 0x00, 0x01});
    phone->send({0x01, 0x0F, 0x01, 0x01});
    bench.run(520ms);
    const Lines presses = heardOnA();
    ASSERT_THAT(presses, testing::SizeIs(16));
    EXPECT_EQ(presses[7], "260ms B0 2F 04");
    EXPECT_EQ(presses[8], "260ms B0 0F 01");
    EXPECT_EQ(presses[15], "520ms B0 2F 04");
}

TEST_F(AutomationModesTest, TheNewestSettingOfAStripCounts) {
    phone->send({0x01, 0x0F, 0x00, 0x01});
    for (const std::uint8_t mode : Bytes{2, 3, 4})
        phone->send({0x01, 0x0F, 0x01, mode});
    bench.run(520ms);
    const Lines presses = heardOnA();
    EXPECT_THAT(presses, testing::SizeIs(16));
    EXPECT_THAT(presses, testing::Contains("310ms B0 2F 44"));
}

TEST_F(AutomationModesTest, ASettingThatHasNotPressedItsModeIsDroppedWhenAnotherDeviceTakesControl) {
    const auto tablet = bench.phone("192.168.1.8");
    phone->send({0x01, 0x0F, 0x02, 0x05});
    bench.run(10ms);
    tablet->send({0x01, 0x25});
    bench.run(300ms);
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 02", "0ms B0 2F 44", "30ms B0 0F 02", "30ms B0 2F 04"));
    EXPECT_THAT(bench.takeLines(), testing::Contains("✗ Dropped automation mode: another device has taken control"));
}

TEST_F(AutomationModesTest, ASettingLetsTheAutoKeyGoSoonWhenAnotherDeviceTakesControl) {
    const auto tablet = bench.phone("192.168.1.8");
    phone->send({0x01, 0x0F, 0x02, 0x05});
    bench.run(150ms);
    tablet->send({0x01, 0x25});
    bench.run(300ms);
    const Lines presses = heardOnA();
    ASSERT_THAT(presses, testing::SizeIs(8));
    EXPECT_EQ(presses[7], "170ms B0 2F 04");
    EXPECT_THAT(bench.takeLines(), testing::Not(testing::Contains(testing::HasSubstr("Dropped"))));
}

TEST_F(AutomationModesTest, AModeIsNotPressedForAFormerOwnerWhoseLossTheMainThreadHasNotHeardOf) {
    bool isAsked = false;
    bench.parts().queue.ownerIs({.number = 2});
    world.runtime.background(Priority::normal, [&] {
        automation.pressMode(*Strip::of(2), 5, {.number = 1}, [&] { return isAsked = true; });
    });
    bench.run(300ms);
    EXPECT_FALSE(isAsked);
    EXPECT_THAT(heardOnA(), IsEmpty());
}

TEST_F(AutomationModesTest, ASettingComesBeforeThePollsThatWait) {
    state.lastAutoPollAll = distantPast;
    automation.pollAllAutoModes();
    bench.run(10ms);
    phone->send({0x01, 0x0F, 0x05, 0x01});
    bench.run(1s);
    const Lines presses = heardOnA();
    ASSERT_GT(presses.size(), 8U);
    EXPECT_EQ(presses[4], "150ms B0 0F 05");
    EXPECT_EQ(presses[7], "200ms B0 2F 41");
}

TEST_F(AutomationModesTest, AModeIsNotSetWhenTheUserHasMovedTheBanksMeanwhile) {
    bench.setTrackMap(numbers(20), 0);
    phone->send({0x01, 0x0F, 0x05, 0x01});
    bench.run(30ms);
    bench.setTrackMap(numbers(20), 8);
    bench.run(500ms);
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 05", "0ms B0 2F 44", "200ms B0 0F 05", "200ms B0 2F 04"));
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped automation mode: its track is no longer shown"));
}

// Nobody knows so soon whether it is a name, or a mode that is told in another way.
TEST_F(AutomationModesTest, AModeIsNotSetWhenATextHasComeThatMayBeAnotherName) {
    bench.surfaceA.name(5, "Kick");
    settle();
    phone->send({0x01, 0x0F, 0x05, 0x01});
    bench.run(30ms);
    bench.surfaceA.name(5, "Bass");
    bench.run(500ms);
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 05", "0ms B0 2F 44", "200ms B0 0F 05", "200ms B0 2F 04"));
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped automation mode: its track is no longer shown"));
}

// A mode stands over the name, so another track shows itself by its mode at most.
TEST_F(AutomationModesTest, AModeIsNotSetWhenTheStripShowsAnotherModeFirst) {
    bench.surfaceA.name(5, "Kick");
    settle();
    for (const std::string mode : {"Read", "Off "}) {
        phone->send({0x01, 0x0F, 0x05, 0x01});
        bench.run(10ms);
        bench.surfaceA.name(5, "Read");
        bench.run(20ms);
        bench.surfaceA.name(5, mode);
        bench.run(500ms);
        const bool isPressed =
            std::ranges::any_of(heardOnA(), [](const auto& line) { return line.ends_with("2F 41"); });
        EXPECT_EQ(isPressed, mode == "Read") << mode;
    }
    EXPECT_THAT(bench.takeLines(), testing::Contains("✗ Dropped automation mode: its track is no longer shown"));
}

TEST_F(AutomationModesTest, AModeIsSetWhereTheTrackHasGone) {
    bench.setTrackMap(numbers(20), 0);
    bench.parts().queue.request({.kind = DeskJob::Kind::seek,
                                 .begin = [] { return true; },
                                 .work = [this] { world.runtime.sleepFor(500ms); },
                                 .end = [this] { bench.setTrackMap(numbers(20), 3); }});
    phone->send({0x01, 0x0F, 0x05, 0x01});
    bench.run(2s);
    EXPECT_THAT(heardOnA(), testing::Contains("500ms B0 0F 02"));
}

TEST_F(AutomationModesTest, AStripOrAModeOutOfRangeSetsNothing) {
    phone->send({0x01, 0x0F, 0x10, 0x00});
    phone->send({0x01, 0x0F, 0x00, 0x06});
    bench.run(260ms);
    EXPECT_THAT(heardOnA(), IsEmpty());
    EXPECT_THAT(bench.heardOn(bench.surfaceB), IsEmpty());
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST(AutomationModesInJapanese, NamesTheModeInTheLog) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.start();
    bench.parts().automation.setAutoMode(*Strip::of(0), 1, bench.asked());
    bench.run(260ms);
    EXPECT_THAT(bench.takeLines(), ElementsAre("← auto ch1 モード変更 → 不明"));
}

} // namespace
} // namespace lumbrine
