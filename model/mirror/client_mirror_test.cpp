// What the client is told, when, and when not.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

using testing::SizeIs;

class ClientMirrorTest : public OwnedModelTest {
protected:
    ClientMirror& mirror = bench.parts().mirror;

    std::vector<bool*> motions() {
        return {&bench.state().bank.seeking, &bench.state().bank.groupApplying, &bench.state().published.calibrating};
    }
};

TEST_F(ClientMirrorTest, CutsANameToFourBytesAndPadsAShortOne) {
    mirror.sendTrackNameToClient(*Strip::of(9), "Guitar");
    mirror.sendTrackNameToClient(*Strip::of(0), "Gt");
    EXPECT_THAT(heard(0x10), ElementsAre("0ms 01 10 09 47 75 69 74", "0ms 01 10 00 47 74 20 20"));
}

TEST_F(ClientMirrorTest, ClampsAFader) {
    mirror.sendFaderToClient(*Strip::of(0), 1.2);
    mirror.sendFaderToClient(*Strip::of(15), -0.1);
    EXPECT_THAT(heard(0x12), ElementsAre("0ms 01 12 00 3F FF", "0ms 01 12 0F 00 00"));
}

TEST_F(ClientMirrorTest, SendsChangedSwitchesOnce) {
    bench.state().mirror.soloCache[7] = true;
    mirror.sendSwitchesIfChanged();
    mirror.sendSwitchesIfChanged();
    EXPECT_THAT(heard(0x13),
                ElementsAre("0ms 01 13 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01 00"));
}

TEST_F(ClientMirrorTest, SendsAllSwitchesAlways) {
    mirror.sendAllSwitches();
    mirror.sendAllSwitches();
    EXPECT_THAT(heard(0x13), SizeIs(2));
}

TEST_F(ClientMirrorTest, TakesNoFullMessageForAnAnswerToAChange) {
    bench.state().mirror.soloCache[7] = true;
    bench.state().mirror.transportPlaying = true;
    mirror.sendAllSwitches();
    mirror.sendTransport();
    settle();
    phone->tape.clear();
    mirror.sendSwitchesIfChanged(); // the full one may have gone to another client
    mirror.sendTransportIfChanged();
    settle();
    EXPECT_THAT(bench.heardBy(*phone),
                ElementsAre("0ms 01 13 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01 00",
                            "0ms 01 1D 01 00"));
}

TEST_F(ClientMirrorTest, ShowsBothPanSidesOfEveryStrip) {
    bench.state().mirror.panPos[0][0] = 3;
    bench.state().mirror.panPos[1][0] = 15;
    bench.state().mirror.panCen[1][0] = true;
    mirror.sendAllPans();
    const Lines pans = heard(0x14);
    EXPECT_THAT(pans, SizeIs(16));
    EXPECT_EQ(pans[0], "0ms 01 14 00 00 03 00");
    EXPECT_EQ(pans[1], "0ms 01 14 00 01 0B 01");
    EXPECT_EQ(pans[15], "0ms 01 14 07 01 00 00");
}

TEST_F(ClientMirrorTest, ShowsWhichTracksTheStripsShow) {
    bench.setTrackMap({"a", "b", "c"}, 1);
    PublishedState& published = bench.state().published;
    published.trackMapFull = {"Alpha", "Beta", "ギター"};
    published.trackMapColors = {0x112233, 0xAABBCC, std::nullopt};
    published.trackMapInputMon = {true, false, true};
    mirror.sendBankView();
    settle();
    EXPECT_THAT(bench.heardBy(*phone),
                ElementsAre("0ms 01 16 00 01 00 03 08", "0ms 01 18 00 42 65 74 61",
                            "0ms 01 18 01 E3 82 AE E3 82 BF E3 83 BC", "0ms 01 18 02", "0ms 01 18 03", "0ms 01 18 04",
                            "0ms 01 18 05", "0ms 01 18 06", "0ms 01 18 07",
                            "0ms 01 19 01 AA BB CC 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                            "00 00 00 00 00 00",
                            "0ms 01 1A 00 01 00 00 00 00 00 00"));
}

TEST_F(ClientMirrorTest, ShowsNoTracksWhileThePositionIsUnknown) {
    bench.setTrackMap({"a", "b"}, -1);
    bench.state().published.trackMapFull = {"Alpha", "Beta"};
    bench.state().published.trackMapColors = {0x112233, 0x112233};
    bench.state().published.trackMapInputMon = {true, true};
    mirror.sendBankView();
    settle();
    const Lines messages = bench.heardBy(*phone);
    EXPECT_EQ(messages[0], "0ms 01 16 FF FF 00 02 08");
    EXPECT_EQ(messages[2], "0ms 01 18 01");
    EXPECT_EQ(messages[9].substr(0, 23), "0ms 01 19 00 00 00 00 0");
    EXPECT_EQ(messages[10], "0ms 01 1A 00 00 00 00 00 00 00 00");
}

TEST_F(ClientMirrorTest, CutsAFullNameBetweenCharacters) {
    std::string name;
    for (int i = 0; i < 20; ++i)
        name += "音";
    bench.setTrackMap({"a"}, 0);
    bench.state().published.trackMapFull = {name};
    mirror.sendVisibleFullNames();
    const std::string first = heard(0x18).front();
    EXPECT_EQ(first.size(), std::string("0ms 01 18 00").size() + 48 * 3);
}

TEST_F(ClientMirrorTest, SendsSixteenStripsOfTheWiderWindow) {
    bench.state().published.winW = 16;
    bench.state().mirror.selectCache[15] = true;
    mirror.sendSelectsToClient();
    mirror.sendShownFaders();
    EXPECT_THAT(heard(0x17), ElementsAre("0ms 01 17 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01"));
    mirror.sendShownFaders();
    EXPECT_THAT(heard(0x12), SizeIs(16));
}

TEST_F(ClientMirrorTest, SendsTheNamesOfShownStripsThatHaveOne) {
    bench.state().mirror.nameCache[7] = "Bass";
    bench.state().mirror.nameCache[8] = "Keys";
    mirror.sendShownTrackNames();
    EXPECT_THAT(heard(0x10), ElementsAre("0ms 01 10 07 42 61 73 73"));
    bench.state().published.winW = 16;
    mirror.sendShownTrackNames();
    EXPECT_THAT(heard(0x10), ElementsAre("0ms 01 10 07 42 61 73 73", "0ms 01 10 08 4B 65 79 73"));
}

TEST_F(ClientMirrorTest, SendsChangedAutomationModesOnce) {
    mirror.sendAllAutoModes();
    bench.state().automation.autoModeCache[2] = 0x0A;
    mirror.sendAutoModesIfChanged();
    mirror.sendAutoModesIfChanged();
    EXPECT_THAT(heard(0x1C), ElementsAre("0ms 01 1C 00 00 00 00 00 00 00 00", "0ms 01 1C 00 00 0A 00 00 00 00 00"));
}

TEST_F(ClientMirrorTest, TakesAnotherNumberOfModesForAChange) {
    mirror.sendAllAutoModes();
    bench.state().published.winW = 16;
    mirror.sendAutoModesIfChanged();
    EXPECT_THAT(heard(0x1C), SizeIs(2));
}

TEST_F(ClientMirrorTest, SendsAChangedTransportOnce) {
    mirror.sendTransportIfChanged();
    bench.state().mirror.transportRecording = true;
    mirror.sendTransportIfChanged();
    mirror.sendTransportIfChanged();
    EXPECT_THAT(heard(0x1D), ElementsAre("0ms 01 1D 00 01"));
}

TEST_F(ClientMirrorTest, HoldsBackWhatIsInMotion) {
    for (bool* motion : motions()) {
        *motion = true;
        bench.state().mirror.soloCache[0] = !bench.state().mirror.soloCache[0];
        mirror.sendFaderToClient(*Strip::of(0), 0.5);
        mirror.sendSwitchesIfChanged();
        mirror.sendSelectsToClient();
        mirror.sendPan(*Strip::of(0), 0);
        mirror.sendAllPans();
        mirror.sendAllAutoModes();
        mirror.sendAutoModesIfChanged();
        settle();
        EXPECT_THAT(bench.heardBy(*phone), IsEmpty());
        *motion = false;
    }
}

TEST_F(ClientMirrorTest, TellsTheRestInMotionToo) {
    bench.setTrackMap({"a"}, 0);
    bench.parts().capture.ensureSessAutoPanSize();
    bench.state().published.winW = 1; // so that each message comes once
    for (bool* motion : motions()) {
        *motion = true;
        bench.state().mirror.transportPlaying = !bench.state().mirror.transportPlaying;
        mirror.sendTrackNameToClient(*Strip::of(0), "Kick");
        mirror.sendAllSwitches();
        mirror.sendPanMode();
        mirror.sendBankView();
        mirror.sendTransportIfChanged();
        mirror.sendTransport();
        mirror.sendSessAutoModes();
        mirror.sendSessPan();
        settle();
        std::string types;
        for (const std::string& message : bench.heardBy(*phone))
            types += message.substr(6, 3);
        EXPECT_EQ(types, " 10 13 15 16 18 19 1A 1D 1D 1E 1F");
        *motion = false;
    }
}

TEST_F(ClientMirrorTest, ShowsAfterTheMotionWhatChangedInIt) {
    bench.state().bank.seeking = true;
    bench.state().mirror.soloCache[0] = true;
    mirror.sendSwitchesIfChanged();
    bench.state().bank.seeking = false;
    mirror.sendSwitchesIfChanged();
    EXPECT_THAT(heard(0x13), SizeIs(1));
}

TEST_F(ClientMirrorTest, SendsTheSessionInChunksOf64) {
    bench.setTrackMap(std::vector<std::string>(130, "x"), 0);
    bench.parts().capture.ensureSessAutoPanSize();
    bench.state().session.sessAutoModes[128] = 3;
    bench.state().session.sessPanKnown[129] = true;
    mirror.sendSessAutoModes();
    mirror.sendSessPan();
    settle();
    const Lines chunks = bench.heardBy(*phone);
    ASSERT_THAT(chunks, SizeIs(6));
    EXPECT_EQ(chunks[0].substr(0, 18), "0ms 01 1E 00 00 40");
    EXPECT_EQ(chunks[1].substr(0, 18), "0ms 01 1E 00 40 40");
    EXPECT_EQ(chunks[2], "0ms 01 1E 00 80 02 03 00");
    EXPECT_EQ(chunks[5], "0ms 01 1F 00 80 02 00 00 00 00 06 01");
}

TEST_F(ClientMirrorTest, SendsThePanThatWasSeenOfEachTrack) {
    bench.setTrackMap({"a", "b", "c"}, 0);
    bench.parts().capture.ensureSessAutoPanSize();
    SessionTable& session = bench.state().session;
    session.sessPanKnown = {true, true, false};
    session.sessPanSide = {1, 0, 1};
    session.sessPanPos = {3, 14, 5};
    session.sessPanCenter = {false, true, true};
    mirror.sendSessPan();
    EXPECT_THAT(heard(0x1F), ElementsAre("0ms 01 1F 00 00 03 01 03 00 00 0B 01 00 00 00"));
}

TEST_F(ClientMirrorTest, SendsNothingOfASessionWithoutTracks) {
    mirror.sendSessAutoModes();
    mirror.sendSessPan();
    settle();
    EXPECT_THAT(bench.heardBy(*phone), IsEmpty());
}

TEST(ClientMirror, SendsNothingBeforeTheLinkIsOpen) {
    ModelWorld world;
    ModelBench bench(world);
    bench.parts().mirror.sendAllSwitches();
    bench.parts().mirror.snapshotFor("192.168.1.7:1", [&bench] { bench.parts().mirror.sendAllSwitches(); });
}

} // namespace
} // namespace lumbrine
