// What the client is told, when, and when not.
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

using testing::SizeIs;

class ClientMirrorTest : public OwnedModelTest {
protected:
    ClientMirror& mirror = bench.parts().mirror;

    static constexpr std::array<BankUser, 3> motions{BankUser::seek, BankUser::scan, BankUser::walk};
};

TEST_F(ClientMirrorTest, CutsANameToFourBytesAndPadsAShortOne) {
    mirror.sendTrackNameToClient(*Strip::of(9), "Guitar");
    mirror.sendTrackNameToClient(*Strip::of(0), "Gt");
    EXPECT_THAT(heard(0x10), ElementsAre("0ms 01 10 09 47 75 69 74", "0ms 01 10 00 47 74 20 20"));
}

// It may have been in control before, when other tracks were on the strips.
TEST_F(ClientMirrorTest, TellsANewOwnerTheNamesBeforeAnythingElse) {
    bench.surfaceA.name(3, "Kick");
    settle();
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x25});
    settle();
    other->tape.clear();
    bench.surfaceA.fader(3, 1.0);
    bench.surfaceA.fader(3, 0.0);
    settle();
    EXPECT_THAT(bench.heardBy(*other),
                ElementsAre("0ms 01 10 03 4B 69 63 6B", "0ms 01 12 03 3F FF", "0ms 01 12 03 00 00"));
}

// A seek tells them with each position that it is about to reach, and once more at its end.
TEST_F(ClientMirrorTest, RepeatsNoFullNamesWhileTheBanksMove) {
    bench.setTrackMap({"Kick"}, 0);
    bench.state().published.banksUsedBy = BankUser::seek;
    bench.run(1200ms); // with a resend of everything
    EXPECT_THAT(heard(0x18), IsEmpty());
    bench.state().published.banksUsedBy.reset();
    sendNothing();
    bench.run(1200ms);
    EXPECT_THAT(heard(0x18), SizeIs(8));
}

TEST_F(ClientMirrorTest, ClampsAFader) {
    mirror.sendFaderToClient(*Strip::of(0), 1.2);
    mirror.sendFaderToClient(*Strip::of(15), -0.1);
    EXPECT_THAT(heard(0x12), ElementsAre("0ms 01 12 00 3F FF", "0ms 01 12 0F 00 00"));
}

TEST_F(ClientMirrorTest, SendsChangedSwitchesOnce) {
    bench.state().published.strips[7].solo = true;
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
    bench.state().published.strips[7].solo = true;
    bench.state().transportPlaying = true;
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
    bench.state().published.strips[0].pan[0].position = 3;
    bench.state().published.strips[0].pan[1].position = 15;
    bench.state().published.strips[0].pan[1].centre = true;
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
    setColumn(published.session, &Track::name, {"Alpha", "Beta", "ギター"});
    setColumn(published.session, &Track::color, {0x112233, 0xAABBCC, std::nullopt});
    setColumn(published.session, &Track::inputMonitor, {true, false, true});
    mirror.send(occasion::bankView);
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
    setColumn(bench.state().published.session, &Track::name, {"Alpha", "Beta"});
    setColumn(bench.state().published.session, &Track::color, {0x112233, 0x112233});
    setColumn(bench.state().published.session, &Track::inputMonitor, {true, true});
    mirror.send(occasion::bankView);
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
    setColumn(bench.state().published.session, &Track::name, {name});
    mirror.sendVisibleFullNames();
    const std::string first = heard(0x18).front();
    EXPECT_EQ(first.size(), std::string("0ms 01 18 00").size() + 48 * 3);
}

TEST_F(ClientMirrorTest, SendsSixteenStripsOfTheWiderWindow) {
    bench.state().published.winW = 16;
    bench.state().published.strips[15].select = true;
    mirror.sendSelectsToClient();
    mirror.sendShownFaders();
    EXPECT_THAT(heard(0x17), ElementsAre("0ms 01 17 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01"));
    mirror.sendShownFaders();
    EXPECT_THAT(heard(0x12), SizeIs(16));
}

TEST_F(ClientMirrorTest, SendsTheNamesOfShownStripsThatHaveOne) {
    bench.state().published.strips[7].name = "Bass";
    bench.state().published.strips[8].name = "Keys";
    mirror.sendShownTrackNames();
    EXPECT_THAT(heard(0x10), ElementsAre("0ms 01 10 07 42 61 73 73"));
    bench.state().published.winW = 16;
    mirror.sendShownTrackNames();
    EXPECT_THAT(heard(0x10), ElementsAre("0ms 01 10 07 42 61 73 73", "0ms 01 10 08 4B 65 79 73"));
}

TEST_F(ClientMirrorTest, SendsChangedAutomationModesOnce) {
    mirror.sendAllAutoModes();
    bench.state().published.strips[2].mode = 0x0A;
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
    bench.state().transportRecording = true;
    mirror.sendTransportIfChanged();
    mirror.sendTransportIfChanged();
    EXPECT_THAT(heard(0x1D), ElementsAre("0ms 01 1D 00 01"));
}

TEST_F(ClientMirrorTest, HoldsBackWhatIsInMotion) {
    for (const BankUser user : motions) {
        bench.state().published.banksUsedBy = user;
        bench.state().published.strips[0].solo = !bench.state().published.strips[0].solo;
        mirror.sendFaderToClient(*Strip::of(0), 0.5);
        mirror.sendSwitchesIfChanged();
        mirror.sendSelectsToClient();
        mirror.sendPan(*Strip::of(0), 0);
        mirror.sendAllPans();
        mirror.sendAllAutoModes();
        mirror.sendAutoModesIfChanged();
        settle();
        EXPECT_THAT(bench.heardBy(*phone), IsEmpty());
    }
}

TEST_F(ClientMirrorTest, TellsTheRestInMotionToo) {
    bench.setTrackMap({"a"}, 0);
    bench.state().published.session.surveyed = true;
    bench.state().published.winW = 1; // so that each message comes once
    for (const BankUser user : motions) {
        bench.state().published.banksUsedBy = user;
        bench.state().transportPlaying = !bench.state().transportPlaying;
        mirror.sendTrackNameToClient(*Strip::of(0), "Kick");
        mirror.sendAllSwitches();
        mirror.sendPanMode();
        mirror.send(occasion::bankView);
        mirror.sendTransportIfChanged();
        mirror.sendTransport();
        mirror.sendSessAutoModes();
        mirror.sendSessPan();
        settle();
        std::string types;
        for (const std::string& message : bench.heardBy(*phone))
            types += message.substr(6, 3);
        EXPECT_EQ(types, " 10 13 15 16 18 19 1A 1D 1D 1E 1F");
    }
}

TEST_F(ClientMirrorTest, ShowsAfterTheMotionWhatChangedInIt) {
    bench.state().published.banksUsedBy = BankUser::seek;
    bench.state().published.strips[0].solo = true;
    mirror.sendSwitchesIfChanged();
    bench.state().published.banksUsedBy.reset();
    mirror.sendSwitchesIfChanged();
    EXPECT_THAT(heard(0x13), SizeIs(1));
}

TEST_F(ClientMirrorTest, SendsTheSessionInChunksOf64) {
    bench.setTrackMap(std::vector<std::string>(130, "x"), 0);
    bench.state().published.session.surveyed = true;
    bench.state().published.session.tracks[128].mode = 3;
    bench.state().published.session.tracks[129].pan = SessionPan{.known = true, .position = 6, .centre = true};
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
    bench.state().published.session.surveyed = true;
    setColumn(bench.state().published.session, &Track::pan,
              {SessionPan{.known = true, .side = 1, .position = 3, .centre = false},
               SessionPan{.known = true, .side = 0, .position = 14, .centre = true}, std::nullopt});
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
    bench.parts().mirror.sendTo("192.168.1.7:1", occasion::hello);
}

} // namespace
} // namespace lumbrine
