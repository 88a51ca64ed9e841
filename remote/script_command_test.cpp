#include "remote/script_command.h"

namespace lumbrine::remote {
namespace {

Bytes sent(std::string_view text) {
    const auto datagram = scriptCommand(text, std::nullopt);
    EXPECT_TRUE(datagram.has_value()) << text;
    return datagram.value_or(Bytes{});
}

void expectRefused(std::string_view text) {
    EXPECT_FALSE(scriptCommand(text, std::nullopt).has_value()) << text;
}

TEST(ScriptCommand, CountsStripsFromOne) {
    EXPECT_EQ(sent("touch 1"), (Bytes{0x01, 0x02, 0x00}));
    EXPECT_EQ(sent("release 16"), (Bytes{0x01, 0x03, 0x0F}));
    expectRefused("touch 0");
    expectRefused("touch 17");
    expectRefused("touch -1");
    expectRefused("touch x");
    expectRefused("touch 1x");
}

TEST(ScriptCommand, MovesFadersFromZeroToOne) {
    EXPECT_EQ(sent("fader 3 0"), (Bytes{0x01, 0x01, 0x02, 0x00, 0x00}));
    EXPECT_EQ(sent("fader 3 0.72"), (Bytes{0x01, 0x01, 0x02, 0x2E, 0x13})); // 11795
    EXPECT_EQ(sent("fader 3 1.0"), (Bytes{0x01, 0x01, 0x02, 0x3F, 0xFF}));
    expectRefused("fader 3 1.01");
    expectRefused("fader 3 -0.1");
    expectRefused("fader 3 loud");
    expectRefused("fader 3 .");
    expectRefused("fader 3 0.5.5");
    expectRefused("fader 3 1e0");
}

TEST(ScriptCommand, PressesSwitches) {
    EXPECT_EQ(sent("mute 3"), (Bytes{0x01, 0x04, 0x02}));
    EXPECT_EQ(sent("solo 3"), (Bytes{0x01, 0x05, 0x02}));
    EXPECT_EQ(sent("rec 3"), (Bytes{0x01, 0x06, 0x02}));
    EXPECT_EQ(sent("select 3"), (Bytes{0x01, 0x0D, 0x02}));
    EXPECT_EQ(sent("monitor 3"), (Bytes{0x01, 0x0E, 0x02}));
}

TEST(ScriptCommand, TurnsPans) {
    EXPECT_EQ(sent("vpot 3 -2"), (Bytes{0x01, 0x07, 0x02, 0xFE}));
    EXPECT_EQ(sent("pan-mode"), (Bytes{0x01, 0x08}));
    EXPECT_EQ(sent("pan-seek 3 9"), (Bytes{0x01, 0x09, 0x02, 0x09}));
    expectRefused("vpot 3 128");
    expectRefused("vpot 3");
    expectRefused("pan-mode 3");
}

TEST(ScriptCommand, MovesThroughTheSessionWithTracksCountedFromOne) {
    EXPECT_EQ(sent("channel left"), (Bytes{0x01, 0x0A, 0x00}));
    EXPECT_EQ(sent("bank left"), (Bytes{0x01, 0x0A, 0x01}));
    EXPECT_EQ(sent("channel right"), (Bytes{0x01, 0x0A, 0x02}));
    EXPECT_EQ(sent("bank right"), (Bytes{0x01, 0x0A, 0x03}));
    EXPECT_EQ(sent("seek 17"), (Bytes{0x01, 0x0B, 0x00, 0x10}));
    EXPECT_EQ(sent("seek 65536"), (Bytes{0x01, 0x0B, 0xFF, 0xFF}));
    EXPECT_EQ(sent("visible 1 16"), (Bytes{0x01, 0x24, 0x00, 0x00, 0x10}));
    EXPECT_EQ(sent("recalibrate"), (Bytes{0x01, 0x0C}));
    expectRefused("bank up");
    expectRefused("seek 0");
    expectRefused("seek 65537");
    expectRefused("visible 1 256");
}

TEST(ScriptCommand, SetsAutomationModes) {
    EXPECT_EQ(sent("auto-mode 3 read"), (Bytes{0x01, 0x0F, 0x02, 0x02}));
    EXPECT_EQ(sent("auto-mode 3 trim"), (Bytes{0x01, 0x0F, 0x02, 0x00}));
    expectRefused("auto-mode 3 loud");
}

TEST(ScriptCommand, ActsOnGroupsOfTracks) {
    EXPECT_EQ(sent("group-mute on 6 257"), (Bytes{0x01, 0x21, 0x01, 0x02, 0x00, 0x05, 0x01, 0x00}));
    EXPECT_EQ(sent("group-solo off"), (Bytes{0x01, 0x22, 0x00, 0x00}));
    EXPECT_EQ(sent("group-auto-mode touch 1"), (Bytes{0x01, 0x20, 0x05, 0x01, 0x00, 0x00}));
    EXPECT_EQ(sent("group-faders 6=1 257=0"),
              (Bytes{0x01, 0x23, 0x02, 0x00, 0x05, 0x3F, 0xFF, 0x01, 0x00, 0x00, 0x00}));
    expectRefused("group-mute 6");
    expectRefused("group-faders 6");
    expectRefused("group-faders 6=2");
    expectRefused("group-auto-mode 1");
}

TEST(ScriptCommand, RefusesMoreMembersThanAGroupHolds) {
    std::string text = "group-mute on";
    for (int i = 0; i < 255; ++i)
        text += " 1";
    EXPECT_EQ(sent(text).size(), 4u + 2u * 255u);
    expectRefused(text + " 1");
}

TEST(ScriptCommand, SaysHelloWithTheToken) {
    EXPECT_EQ(scriptCommand("hello", 7), (Bytes{0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, 7}));
    EXPECT_EQ(sent("hello"), (Bytes{0x01, 0x00}));
    EXPECT_EQ(sent("take-over"), (Bytes{0x01, 0x25}));
    expectRefused("hello 1");
}

TEST(ScriptCommand, SendsAnyBytes) {
    EXPECT_EQ(sent("hex 01 1f FF"), (Bytes{0x01, 0x1F, 0xFF}));
    expectRefused("hex");
    expectRefused("hex 100");
    expectRefused("hex 0x01");
}

TEST(ScriptCommand, PassesOverBlanks) {
    EXPECT_EQ(sent("  mute   3 "), (Bytes{0x01, 0x04, 0x02}));
    expectRefused("");
    expectRefused("  ");
}

TEST(ScriptCommand, SaysWhatIsWrong) {
    EXPECT_EQ(scriptCommand("mut 3", std::nullopt).error(), "no such command: mut");
    EXPECT_EQ(scriptCommand("fader 3", std::nullopt).error(), "\"fader 3\" is not of the form: fader STRIP VALUE");
}

TEST(ScriptCommand, IsListedInTheHelp) {
    EXPECT_NE(scriptCommandHelp().find("  fader STRIP VALUE"), std::string::npos);
    EXPECT_NE(scriptCommandHelp().find("  auto-mode STRIP trim|latch|read|off|write|touch "), std::string::npos);
}

} // namespace
} // namespace lumbrine::remote
