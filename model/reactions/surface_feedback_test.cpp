// From HUI bytes to the state and to datagrams.
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

class SurfaceFeedbackTest : public OwnedModelTest {
protected:
    ReceiverState& state = bench.state();
};

// ---- Faders

TEST_F(SurfaceFeedbackTest, AFaderOfProToolsIsShownToTheClient) {
    bench.surfaceA.send({0xB0, 0x03, 0x7F});
    bench.surfaceA.send({0xB0, 0x23, 0x7F});
    bench.surfaceB.send({0xB0, 0x00, 0x40});
    bench.surfaceB.send({0xB0, 0x20, 0x00});
    settle();
    EXPECT_EQ(state.published.strips[3].fader, 1.0);
    EXPECT_EQ(state.published.strips[8].fader, 8192 / 16383.0);
    EXPECT_THAT(heard(0x12), testing::UnorderedElementsAre("0ms 01 12 03 3F FF", "0ms 01 12 08 20 00"));
}

TEST_F(SurfaceFeedbackTest, AnEchoIsKeptFromTheFingerForOneAndAHalfSeconds) {
    phone->send({0x01, 0x02, 0x03});
    bench.run(1499ms);
    bench.surfaceA.fader(3, 0.5);
    EXPECT_THAT(bench.heardBy(*phone, 0x12), testing::Not(testing::Contains("1499ms 01 12 03 1F FF")));
    EXPECT_THAT(heard(0x12), IsEmpty());
    EXPECT_EQ(state.published.strips[3].fader, 8191 / 16383.0);
    bench.run(1ms);
    bench.surfaceA.fader(3, 0.25);
    EXPECT_THAT(heard(0x12), ElementsAre("1500ms 01 12 03 0F FF"));
}

TEST_F(SurfaceFeedbackTest, EachMoveOfAHeldFaderKeepsEchoesAwayAnew) {
    phone->send({0x01, 0x02, 0x03});
    bench.run(1s);
    phone->send({0x01, 0x01, 0x03, 0x00, 0x00});
    bench.run(1499ms);
    settle();
    phone->tape.clear();
    bench.surfaceA.fader(3, 0.5);
    EXPECT_THAT(heard(0x12), IsEmpty());
}

TEST_F(SurfaceFeedbackTest, AFaderThatIsNotHeldIsAlwaysEchoed) {
    phone->send({0x01, 0x01, 0x03, 0x00, 0x00});
    settle();
    bench.surfaceA.fader(3, 0.5);
    EXPECT_THAT(heard(0x12), ElementsAre("0ms 01 12 03 1F FF"));
}

TEST_F(SurfaceFeedbackTest, AMoveThatProToolsDoesNotFollowIsTakenBackOnceTheHandRests) {
    bench.surfaceA.fader(3, 0.5);
    phone->send({0x01, 0x01, 0x03, 0x3F, 0xFF});
    bench.run(1400ms);
    EXPECT_EQ(state.published.strips[3].fader, 1.0);
    phone->tape.clear();
    bench.run(600ms);
    EXPECT_EQ(state.published.strips[3].fader, 8191 / 16383.0);
    EXPECT_THAT(bench.heardBy(*phone, 0x12), testing::Contains(testing::EndsWith("01 12 03 1F FF")));
}

// Pro Tools may keep the fader of another track back while it is touched.
TEST_F(SurfaceFeedbackTest, AHeldFaderIsNotToldForAnotherTrack) {
    bench.surfaceA.name(3, "Kick");
    bench.surfaceA.fader(3, 0.5);
    phone->send({0x01, 0x02, 0x03});
    phone->send({0x01, 0x01, 0x03, 0x3F, 0xFF});
    settle();
    bench.surfaceA.name(2, "Snr "); // with other banks, strip 3 may have another "Kick"
    settle();
    phone->tape.clear();
    bench.run(1200ms); // with a resend of everything
    EXPECT_THAT(bench.heardBy(*phone, 0x12), testing::Each(testing::Not(testing::HasSubstr("01 12 03"))));
    phone->tape.clear();
    bench.surfaceA.fader(3, 0.25);
    settle();
    EXPECT_EQ(state.published.strips[3].fader, 4095 / 16383.0);
    EXPECT_FALSE(state.published.strips[3].faderUnsure);
}

// Pro Tools shows it some time after the release.
TEST_F(SurfaceFeedbackTest, AFaderThatWasHeldUntilNowIsNotToldForAnotherTrack) {
    bench.surfaceA.name(3, "Kick");
    bench.surfaceA.fader(3, 0.5);
    settle();
    phone->send({0x01, 0x02, 0x03});
    for (int second = 0; second < 2; ++second) {
        bench.run(1s);
        sendNothing();
    }
    bench.surfaceA.name(3, "Snr "); // which lifts the finger
    settle();
    phone->tape.clear();
    bench.run(1400ms); // with a resend of everything
    EXPECT_THAT(bench.heardBy(*phone, 0x12), testing::Each(testing::Not(testing::HasSubstr("01 12 03"))));
    bench.run(500ms);
    EXPECT_THAT(bench.heardBy(*phone, 0x12), testing::Contains(testing::EndsWith("01 12 03 1F FF")));
}

TEST_F(SurfaceFeedbackTest, AFaderThatNobodyHasShownIsNotToldBesideAName) {
    bench.surfaceA.name(3, "Kick");
    settle();
    phone->tape.clear();
    bench.run(1200ms);
    EXPECT_THAT(bench.heardBy(*phone, 0x12), testing::Each(testing::Not(testing::HasSubstr("01 12 03"))));
}

TEST_F(SurfaceFeedbackTest, AnEchoThatIsKeptBackStillEntersTheSessionTable) {
    bench.setTrackMap({"a", "b", "c", "d", "e"}, 1);
    for (int strip = 0; strip < 4; ++strip)
        bench.surfaceA.name(strip, std::string(1, static_cast<char>('b' + strip)) + "   ");
    phone->send({0x01, 0x02, 0x03});
    settle();
    bench.surfaceA.fader(3, 1.0);
    bench.run(150ms);
    EXPECT_EQ(state.published.session.tracks[4].fader, 1.0);
    EXPECT_TRUE(state.fullTableDirty);
}

// ---- Names

TEST_F(SurfaceFeedbackTest, ANameIsShownTrimmed) {
    bench.surfaceB.name(1, " Gt ");
    EXPECT_THAT(heard(0x10), ElementsAre("0ms 01 10 09 47 74 20 20"));
    EXPECT_EQ(state.published.strips[9].name, "Gt");
    EXPECT_EQ(state.published.strips[9].name, "Gt");
}

TEST_F(SurfaceFeedbackTest, AnotherTracksModeIsUnknown) {
    bench.surfaceA.name(0, "Kick");
    settle();
    state.published.strips[0].mode = 3;
    bench.parts().mirror.sendAllAutoModes();
    bench.surfaceA.name(0, "-6.2"); // a value over the name
    bench.surfaceA.name(0, "Kick");
    settle();
    EXPECT_EQ(state.published.strips[0].mode, 3);
    phone->tape.clear();
    bench.surfaceA.name(0, "Snr ");
    EXPECT_THAT(heard(0x1C), ElementsAre("0ms 01 1C 00 00 00 00 00 00 00 00"));
}

TEST_F(SurfaceFeedbackTest, ANameThatDiffersBySpacesOnlyIsNoNewName) {
    bench.surfaceA.name(0, "Gt  ");
    settle();
    phone->tape.clear();
    bench.surfaceA.name(0, " Gt ");
    settle();
    EXPECT_THAT(bench.heardBy(*phone), IsEmpty());
}

TEST_F(SurfaceFeedbackTest, ABlankNameReplacesAnother) {
    bench.surfaceA.name(0, "Kick");
    bench.surfaceA.name(0, "    ");
    EXPECT_THAT(heard(0x10), ElementsAre("0ms 01 10 00 4B 69 63 6B", "0ms 01 10 00 20 20 20 20"));
    EXPECT_EQ(state.published.strips[0].name, "");
}

// A client that was away, or lost a datagram, would go on showing the former one.
TEST_F(SurfaceFeedbackTest, ANameThatIsGoneIsToldAgain) {
    bench.surfaceA.name(0, "Kick");
    bench.surfaceA.name(0, "    ");
    settle();
    phone->tape.clear();
    bench.run(1200ms);
    EXPECT_THAT(bench.heardBy(*phone, 0x10), ElementsAre(testing::EndsWith("01 10 00 20 20 20 20")));
}

TEST_F(SurfaceFeedbackTest, ANewNameShowsWhereTheSurfacesAre) {
    bench.setTrackMap({"Kick", "Snr", "Gt"}, -1);
    bench.surfaceA.name(0, "Snr ");
    settle();
    bench.surfaceA.name(1, "Gt  ");
    EXPECT_THAT(heard(0x16), ElementsAre("0ms 01 16 00 01 00 03 08"));
}

TEST_F(SurfaceFeedbackTest, ANewNameIsToldBeforeThePositionThatFollowsFromIt) {
    bench.setTrackMap({"Kick", "Snr", "Gt"}, -1);
    bench.surfaceA.name(0, "Snr ");
    settle();
    phone->tape.clear();
    bench.surfaceA.name(1, "Gt  ");
    settle();
    const Lines messages = bench.heardBy(*phone);
    ASSERT_GE(messages.size(), 2u);
    EXPECT_EQ(messages[0], "0ms 01 10 01 47 74 20 20");
    EXPECT_EQ(messages[1], "0ms 01 16 00 01 00 03 08");
}

// Another session may look the same.
TEST_F(SurfaceFeedbackTest, TheMapOfASessionThatWasClosedIsForgotten) {
    bench.setTrackMap({"Kick", "Snar"}, 0);
    bench.surfaceA.name(0, "Kick");
    bench.surfaceA.name(1, "Snar");
    settle();
    const TrackOnStrip kick = state.shownOn(*Strip::of(0));
    ASSERT_EQ(kick.index, 0u);

    bench.surfaceA.name(0, "    ");
    settle();
    EXPECT_EQ(state.published.session.size(), 2u);
    bench.surfaceA.name(1, "    ");
    settle();
    EXPECT_THAT(displaysOf(state.published.session), IsEmpty());
    EXPECT_EQ(state.published.bankOffset, -1);
    bench.surfaceA.name(0, "Kick");
    bench.surfaceA.name(1, "Snar");
    settle();
    EXPECT_EQ(state.stripShowing(kick), std::nullopt);
    EXPECT_EQ(state.published.bankOffset, -1);
}

TEST_F(SurfaceFeedbackTest, AMapThatHasAViewWithoutNamesIsKept) {
    bench.setTrackMap({"Kick", "", "", "", "", "", "", "", ""}, 0);
    bench.surfaceA.name(0, "Kick");
    bench.surfaceA.name(0, "    ");
    settle();
    EXPECT_EQ(state.published.session.size(), 9u);
}

TEST_F(SurfaceFeedbackTest, EveryTextSetsTheNameClockBack) {
    DisplayWatch& clock = bench.parts().displays;
    bench.surfaceA.name(0, "Kick");
    settle();
    EXPECT_EQ(clock.age(), 0ms);
    bench.run(50ms);
    EXPECT_EQ(clock.age(), 50ms);
    bench.surfaceA.name(0, "Kick");
    settle();
    EXPECT_EQ(clock.age(), 0ms);
}

TEST_F(SurfaceFeedbackTest, AModeOnTheDisplayAnswersTheProbeOfItsStripOnly) {
    DisplayWatch& displays = bench.parts().displays;
    displays.beginProbe(*Strip::of(9));
    bench.surfaceA.name(1, "Read");
    bench.surfaceB.name(2, "Wrt ");
    settle();
    EXPECT_EQ(displays.endProbe(), 0);
    displays.beginProbe(*Strip::of(9));
    bench.surfaceB.name(1, "Ltch");
    bench.surfaceB.name(1, "Kick");
    settle();
    EXPECT_EQ(displays.endProbe(), 3);
}

// ---- Rings

TEST_F(SurfaceFeedbackTest, ARingIsShownToTheClient) {
    bench.surfaceA.ring(2, 6, true);
    bench.surfaceA.ring(2, 15, false);
    EXPECT_THAT(heard(0x14), ElementsAre("0ms 01 14 02 00 06 01", "0ms 01 14 02 00 0B 00"));
    EXPECT_EQ(state.published.strips[2].pan[0].position, 15);
    EXPECT_FALSE(state.published.strips[2].pan[0].centre);
}

TEST_F(SurfaceFeedbackTest, AnotherNameLeavesTheHiddenPanUnknown) {
    bench.surfaceA.name(2, "Kick");
    bench.surfaceA.ring(2, 3, false);
    settle();
    phone->send({0x01, 0x08}); // right
    settle();
    bench.surfaceA.ring(2, 9, false);
    settle();
    EXPECT_EQ(state.published.strips[2].pan[0].position, 3);
    bench.surfaceA.name(2, "Snr ");
    settle();
    EXPECT_EQ(state.published.strips[2].pan[0].position, 0);
    EXPECT_EQ(state.published.strips[2].pan[1].position, 9);
}

TEST_F(SurfaceFeedbackTest, ARingThatIsNotSentAgainAfterAChangeOfSideIsTheSameOnBoth) {
    bench.surfaceA.ring(2, 3, false);
    settle();
    phone->send({0x01, 0x08});
    bench.run(1s);
    EXPECT_EQ(state.published.strips[2].pan[1].position, 3);
    EXPECT_THAT(bench.heardBy(*phone, 0x14), testing::Contains(testing::EndsWith("01 14 02 01 03 00")));
}

TEST_F(SurfaceFeedbackTest, ARingIsKeptButNotShownWhileTheBanksMove) {
    state.published.banksUsedBy = BankUser::seek;
    bench.surfaceB.ring(7, 4, true);
    EXPECT_THAT(heard(0x14), IsEmpty());
    EXPECT_EQ(state.published.strips[15].pan[0].position, 4);
    EXPECT_TRUE(state.published.strips[15].pan[0].centre);
}

// ---- LEDs

TEST_F(SurfaceFeedbackTest, TheTransportIsShownWhenItChanges) {
    bench.surfaceA.led(0x0E, 4, true);
    bench.surfaceA.led(0x0E, 4, true);
    bench.surfaceA.led(0x0E, 5, true);
    bench.surfaceA.led(0x0E, 3, true);
    bench.surfaceA.led(0x0E, 4, false);
    EXPECT_THAT(heard(0x1D), ElementsAre("0ms 01 1D 01 00", "0ms 01 1D 01 01", "0ms 01 1D 00 01"));
}

TEST_F(SurfaceFeedbackTest, TheTransportLedsOfTheSecondSurfaceAreIgnored) {
    bench.surfaceB.led(0x0E, 4, true);
    EXPECT_THAT(heard(0x1D), IsEmpty());
    EXPECT_FALSE(state.transportPlaying);
}

TEST_F(SurfaceFeedbackTest, ASelectIsShownWhenItChanges) {
    bench.surfaceA.led(2, 1, true);
    bench.surfaceA.led(2, 1, true);
    bench.surfaceA.led(2, 1, false);
    EXPECT_THAT(heard(0x17), ElementsAre("0ms 01 17 00 00 01 00 00 00 00 00", "0ms 01 17 00 00 00 00 00 00 00 00"));
    bench.surfaceB.led(2, 1, true);
    settle();
    EXPECT_TRUE(state.published.strips[10].select);
}

TEST_F(SurfaceFeedbackTest, OtherLedsShowNothing) {
    for (const int port : {0, 4, 5, 6, 8, 15})
        bench.surfaceA.led(0, port, true);
    for (const int zone : {8, 9, 11, 12, 13, 15, 22, 24, 29, 127})
        bench.surfaceA.led(zone, 1, true);
    settle();
    EXPECT_THAT(bench.heardBy(*phone), IsEmpty());
    EXPECT_THAT(bench.lines, IsEmpty());
}

// ---- Pings

TEST_F(SurfaceFeedbackTest, APingIsAnsweredAndCounted) {
    bench.surfaceA.ping();
    settle();
    EXPECT_THAT(bench.surfaceA.presence.takeBytes(), ElementsAre("90 00 7F"));
    EXPECT_EQ(state.published.pingCount, 1);
    EXPECT_EQ(state.presence.lastPing.load(), world.runtime.now());
    EXPECT_EQ(state.presence.firstPingAt, world.runtime.now());
    EXPECT_EQ(state.presence.lastPingB.load(), distantPast);
}

TEST_F(SurfaceFeedbackTest, APingOfTheSecondSurfaceIsNotCounted) {
    bench.surfaceB.ping();
    settle();
    EXPECT_EQ(state.published.pingCount, 0);
    EXPECT_EQ(state.presence.lastPingB.load(), world.runtime.now());
    EXPECT_EQ(state.presence.firstPingAt, world.runtime.now());
    EXPECT_EQ(state.presence.lastPing.load(), distantPast);
}

TEST_F(SurfaceFeedbackTest, APauseOfMoreThanTwoSecondsBeginsANewRunOfPings) {
    for (HostEnd* surface : {&bench.surfaceA, &bench.surfaceB}) {
        bench.run(5s);
        surface->ping();
        settle();
        const TimePoint first = world.runtime.now();
        bench.run(2s);
        surface->ping();
        settle();
        EXPECT_EQ(state.presence.firstPingAt, first);
        bench.run(2001ms);
        surface->ping();
        settle();
        EXPECT_EQ(state.presence.firstPingAt, world.runtime.now());
    }
}

TEST_F(SurfaceFeedbackTest, ASurfaceWhosePingsComeBackIsAnnouncedAnew) {
    for (HostEnd* surface : {&bench.surfaceA, &bench.surfaceB}) {
        surface->ping();
        bench.run(2s);
        surface->ping();
        bench.run(1s);
        EXPECT_THAT(surface->presence.takeBytes(), ElementsAre("90 00 7F", "90 00 7F"));
        bench.run(1001ms);
        surface->ping();
        bench.run(1s);
        EXPECT_THAT(surface->presence.takeBytes(), ElementsAre("90 00 7F", "FF", "FF", "FF"));
    }
}

// ---- The MIDI receive thread

TEST_F(SurfaceFeedbackTest, WhatOtherThreadsWaitForDoesNotWaitForTheMainThread) {
    DisplayWatch& displays = bench.parts().displays;
    displays.beginProbe(*Strip::of(1));
    bench.surfaceA.send({0xA0, 0x02, 0x15}); // strip 2, right
    bench.surfaceA.name(1, "Wrt ");
    bench.surfaceA.ping();
    const TimePoint sent = world.runtime.now();
    world.runtime.sleepFor(1ms); // runs no job of the main thread
    EXPECT_EQ(bench.parts().meters.fall()[5], 5);
    EXPECT_EQ(displays.endProbe(), 4);
    EXPECT_THAT(bench.surfaceA.presence.takeBytes(), ElementsAre("90 00 7F"));
    EXPECT_EQ(state.published.pingCount, 0);
    EXPECT_EQ(state.published.strips[1].name, "");
    settle();
    EXPECT_EQ(state.published.pingCount, 1);
    EXPECT_EQ(state.presence.lastPing.load(), sent);
    EXPECT_EQ(state.presence.firstPingAt, sent);
    EXPECT_EQ(state.published.strips[1].name, ""); // a mode is no name
}

TEST_F(SurfaceFeedbackTest, TheAgeOfNamesDoesNotWaitForTheMainThread) {
    bench.surfaceA.name(1, "Kick");
    world.runtime.sleepFor(1ms); // runs no job of the main thread
    EXPECT_EQ(bench.parts().displays.age(), 1ms);
    EXPECT_EQ(state.published.strips[1].name, "");
    settle();
    EXPECT_EQ(state.published.strips[1].name, "Kick");
}

// ---- Log lines

TEST_F(SurfaceFeedbackTest, LinesOfTheSecondSurfaceSaySo) {
    bench.surfaceA.ping();
    settle();
    bench.surfaceB.ping();
    settle();
    EXPECT_THAT(bench.takeLines(), ElementsAre("♥ ping #1 received → replied (connection alive)",
                                               "[9-16] ♥ ping #1 received → replied (connection alive)"));
}

} // namespace
} // namespace lumbrine
