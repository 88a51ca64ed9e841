#include "remote/message_line.h"
#include "remote/testing/wire_samples.h"

namespace lumbrine::remote {
namespace {

TEST(MessageLine, CountsStripsFromOne) {
    EXPECT_EQ(lineOf(TrackName{strip(0), "Kic "}), "name 1 Kic");
    EXPECT_EQ(lineOf(FullName{strip(15), "Kick In"}), "full-name 16 Kick In");
    EXPECT_EQ(lineOf(TrackName{strip(0), "    "}), "name 1");
}

TEST(MessageLine, PrintsFadersFromZeroToOne) {
    EXPECT_EQ(lineOf(Fader{strip(2), FaderValue::ofRaw(11796)}), "fader 3 0.7200");
    EXPECT_EQ(lineOf(Fader{strip(2), FaderValue::ofRaw(16383)}), "fader 3 1.0000");
}

TEST(MessageLine, PrintsLightsAsLettersAndBlinkingAsASmallOne) {
    EXPECT_EQ(lineOf(Switches{{{}, {Light::on, true, Light::on}, {Light::blinking, false, Light::blinking}}}),
              "switches 1=--- 2=MSR 3=m-r");
}

TEST(MessageLine, GivesEachStripAWord) {
    EXPECT_EQ(lineOf(Meters{{{0, 12}, {7, 0}}}), "meters 1=0/12 2=7/0");
    EXPECT_EQ(lineOf(Selects{{true, false}}), "selects 1=on 2=off");
    EXPECT_EQ(lineOf(InputMons{{true, false}}), "monitors 1=on 2=off");
    EXPECT_EQ(lineOf(Colors{{0x0A80FF, std::nullopt}}), "colors 1=#0a80ff 2=none");
    EXPECT_EQ(lineOf(AutoModes{{0, 1, 10}}), "automation 1=unknown 2=read 3=trim+touch");
}

TEST(MessageLine, PrintsPans) {
    EXPECT_EQ(lineOf(Pan{strip(2), PanSide::left, {6, true}}), "pan 3 left 6 centre");
    EXPECT_EQ(lineOf(Pan{strip(2), PanSide::right, {11, false}}), "pan 3 right 11");
    EXPECT_EQ(lineOf(PanMode{true}), "pan-mode right");
}

TEST(MessageLine, CountsSessionTracksFromOne) {
    EXPECT_EQ(lineOf(BankPos{24, 130, 16}), "bank first=25 tracks=130 strips=16");
    EXPECT_EQ(lineOf(BankPos{std::nullopt, 0, 8}), "bank first=unknown tracks=0 strips=8");
    EXPECT_EQ(lineOf(SessAutoChunk{64, {1, 5}}), "session-automation 65=read 66=off");
    EXPECT_EQ(lineOf(SessPanChunk{0, {{}, {PanSide::right, {6, true}}}}), "session-pan 1=unknown 2=right/6/centre");
}

TEST(MessageLine, PrintsASessionTrack) {
    EXPECT_EQ(
        lineOf(TrackRow{255, FaderValue::ofRaw(0), true, false, true, 0x102030, true, false, "Kick In", "low end"}),
        "row 256 fader=0.0000 mute=on solo=off record=on color=#102030 monitor=on select=off name=Kick In "
        "comment=low end");
}

TEST(MessageLine, PrintsTheRest) {
    EXPECT_EQ(lineOf(Transport{true, false}), "transport play=on record=off");
    EXPECT_EQ(lineOf(ReceiverMessage{Busy{}}), "busy");
    EXPECT_EQ(lineOf(ReceiverMessage{Pong{}}), "pong");
    EXPECT_EQ(lineOf(LinkState::takenOver), "state taken-over");
}

TEST(MessageLine, LetsNoNameSteerTheTerminal) {
    EXPECT_EQ(lineOf(FullName{strip(0), "a\x1B[2J\n"}), "full-name 1 a?[2J?");
}

} // namespace
} // namespace lumbrine::remote
