#include "remote/session_picture.h"
#include "remote/testing/wire_samples.h"

namespace lumbrine::remote {
namespace {

FaderValue raw(int value) {
    return FaderValue::ofRaw(static_cast<std::uint16_t>(value));
}

TEST(SessionPicture, BeginsEmpty) {
    const SessionPicture picture;
    EXPECT_EQ(picture.shownStrips, 8);
    EXPECT_EQ(picture.bankOffset, std::nullopt);
    EXPECT_EQ(picture.at(strip(15)), StripPicture{});
    EXPECT_TRUE(picture.session.empty());
}

TEST(SessionPicture, TakesAStripsNamesWithoutTheBlanksAroundThem) {
    SessionPicture picture;
    EXPECT_TRUE(picture.apply(TrackName{strip(2), " Ki "}));
    EXPECT_TRUE(picture.apply(FullName{strip(2), "Kick In"}));
    EXPECT_EQ(picture.at(strip(2)).name, "Ki");
    EXPECT_EQ(picture.at(strip(2)).fullName, "Kick In");
    EXPECT_TRUE(picture.apply(TrackName{strip(2), "    "}));
    EXPECT_EQ(picture.at(strip(2)).name, "");
}

TEST(SessionPicture, AppliesMessagesAboutOneStrip) {
    SessionPicture picture;
    picture.apply(Fader{strip(9), raw(8192)});
    picture.apply(Pan{strip(9), PanSide::left, {3, false}});
    picture.apply(Pan{strip(9), PanSide::right, {9, true}});
    EXPECT_EQ(picture.at(strip(9)).fader, raw(8192));
    EXPECT_EQ(picture.at(strip(9)).ring(PanSide::left), (RingPosition{3, false}));
    EXPECT_EQ(picture.at(strip(9)).ring(PanSide::right), (RingPosition{9, true}));
}

TEST(SessionPicture, AppliesMessagesAboutEachShownStrip) {
    SessionPicture picture;
    picture.apply(Meters{{{1, 2}, {3, 12}}});
    picture.apply(Switches{{{}, {Light::blinking, true, Light::on}}});
    picture.apply(Selects{{false, true}});
    picture.apply(Colors{{std::nullopt, 0x102030}});
    picture.apply(InputMons{{false, true}});
    picture.apply(AutoModes{{0, 9}});
    StripPicture second;
    second.meters = {3, 12};
    second.lights = {Light::blinking, true, Light::on};
    second.select = true;
    second.color = 0x102030;
    second.inputMonitor = true;
    second.autoMode = 9;
    EXPECT_EQ(picture.at(strip(1)), second);
    EXPECT_EQ(picture.at(strip(0)).meters, (MeterLevels{1, 2}));
}

TEST(SessionPicture, LeavesTheStripsThatAMessageOmitsAsTheyAre) {
    SessionPicture picture;
    picture.apply(Selects{std::vector<bool>(16, true)});
    picture.apply(Selects{std::vector<bool>(8, false)});
    EXPECT_FALSE(picture.at(strip(7)).select);
    EXPECT_TRUE(picture.at(strip(8)).select);
}

TEST(SessionPicture, AppliesMessagesAboutTheWholeSurface) {
    SessionPicture picture;
    picture.apply(PanMode{true});
    picture.apply(Transport{true, true});
    picture.apply(BankPos{24, 130, 16});
    EXPECT_TRUE(picture.panRight);
    EXPECT_EQ(picture.transport, (Transport{true, true}));
    EXPECT_EQ(picture.bankOffset, 24);
    EXPECT_EQ(picture.trackCount, 130);
    EXPECT_EQ(picture.shownStrips, 16);
    picture.apply(BankPos{std::nullopt, 130, 8});
    EXPECT_EQ(picture.bankOffset, std::nullopt);
}

TEST(SessionPicture, JoinsRowsModesAndPansOfASessionTrack) {
    SessionPicture picture;
    const TrackRow row{.index = 65, .fader = raw(5), .name = "Kick"};
    picture.apply(SessAutoChunk{64, {1, 2}});
    picture.apply(row);
    picture.apply(SessPanChunk{65, {{PanSide::right, {6, true}}}});
    EXPECT_EQ(picture.session.at(65), (SessionTrack{row, 2, {PanSide::right, {6, true}}}));
    EXPECT_EQ(picture.session.at(64), (SessionTrack{std::nullopt, 1, {}}));
}

TEST(SessionPicture, ForgetsTracksAfterTheEndOfTheSession) {
    SessionPicture picture;
    picture.apply(SessAutoChunk{0, {1, 1, 1}});
    EXPECT_TRUE(picture.apply(BankPos{std::nullopt, 2, 8}));
    EXPECT_EQ(picture.session.size(), 2u);
    EXPECT_TRUE(picture.session.contains(1));
}

TEST(SessionPicture, HoldsNoMoreThanThereAreIndices) {
    SessionPicture picture;
    for (int first = 0; first < 65536; first += 64)
        picture.apply(SessAutoChunk{static_cast<std::uint16_t>(first), std::vector<AutoMode>(64, 1)});
    picture.apply(SessAutoChunk{65535, {2}});
    EXPECT_EQ(picture.session.size(), 65536u);
}

TEST(SessionPicture, SaysWhetherAMessageChangedAnything) {
    SessionPicture picture;
    EXPECT_TRUE(picture.apply(Fader{strip(0), raw(1)}));
    EXPECT_FALSE(picture.apply(Fader{strip(0), raw(1)}));
    EXPECT_TRUE(picture.apply(Meters{{{0, 0}, {0, 1}}}));
    EXPECT_FALSE(picture.apply(Meters{{{0, 0}, {0, 1}}}));
    EXPECT_TRUE(picture.apply(BankPos{0, 8, 8}));
    EXPECT_FALSE(picture.apply(BankPos{0, 8, 8}));
    EXPECT_FALSE(picture.apply(Pong{}));
    EXPECT_FALSE(picture.apply(Busy{}));
}

TEST(SessionPicture, SettlesWithTheFaderOfTheLastStrip) {
    SessionPicture picture;
    picture.apply(BankPos{8, 24, 8});
    EXPECT_EQ(picture.settledOffset, std::nullopt);
    picture.apply(Fader{strip(6), raw(1)});
    EXPECT_EQ(picture.settledOffset, std::nullopt);
    EXPECT_TRUE(picture.apply(Fader{strip(7), raw(0)})); // the value is no news, that it settles is
    EXPECT_EQ(picture.settledOffset, 8);
    picture.apply(BankPos{std::nullopt, 24, 8});
    EXPECT_FALSE(picture.apply(Fader{strip(7), raw(0)}));
    EXPECT_EQ(picture.settledOffset, 8);
    picture.apply(BankPos{0, 24, 16});
    picture.apply(Fader{strip(7), raw(0)});
    EXPECT_EQ(picture.settledOffset, 8);
    picture.apply(Fader{strip(15), raw(0)});
    EXPECT_EQ(picture.settledOffset, 0);
}

TEST(SessionPicture, FollowsTheClientsOwnFader) {
    SessionPicture picture;
    EXPECT_TRUE(picture.moveFader(strip(4), raw(100)));
    EXPECT_FALSE(picture.moveFader(strip(4), raw(100)));
    EXPECT_EQ(picture.at(strip(4)).fader, raw(100));
}

TEST(SessionPicture, EqualsAnotherWithTheSameMessages) {
    SessionPicture one;
    SessionPicture other;
    EXPECT_EQ(one, other);
    one.apply(Transport{true, false});
    EXPECT_NE(one, other);
    other.apply(Transport{true, false});
    EXPECT_EQ(one, other);
}

} // namespace
} // namespace lumbrine::remote
