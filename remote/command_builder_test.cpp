#include "remote/command_builder.h"
#include "remote/testing/wire_samples.h"

namespace lumbrine::remote {
namespace {

const std::vector<Member> members{5, 256};

TEST(CommandBuilder, SaysHelloWithAndWithoutAToken) {
    EXPECT_EQ(helloCommand(std::nullopt), (Bytes{0x01, 0x00}));
    EXPECT_EQ(helloCommand(0x0102030405060708), (Bytes{0x01, 0x00, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(CommandBuilder, TakesOver) {
    EXPECT_EQ(takeOverCommand(), (Bytes{0x01, 0x25}));
}

TEST(CommandBuilder, TouchesMovesAndReleasesAFader) {
    EXPECT_EQ(faderTouchCommand(strip(3)), (Bytes{0x01, 0x02, 0x03}));
    EXPECT_EQ(faderMoveCommand(strip(3), FaderValue::ofUnit(1.0)), (Bytes{0x01, 0x01, 0x03, 0x3F, 0xFF}));
    EXPECT_EQ(faderMoveCommand(strip(11), FaderValue::ofRaw(8192)), (Bytes{0x01, 0x01, 0x0B, 0x20, 0x00}));
    EXPECT_EQ(faderReleaseCommand(strip(3)), (Bytes{0x01, 0x03, 0x03}));
}

TEST(CommandBuilder, PressesTheSwitchesOfAStrip) {
    EXPECT_EQ(mutePressCommand(strip(0)), (Bytes{0x01, 0x04, 0x00}));
    EXPECT_EQ(soloPressCommand(strip(15)), (Bytes{0x01, 0x05, 0x0F}));
    EXPECT_EQ(recArmPressCommand(strip(1)), (Bytes{0x01, 0x06, 0x01}));
    EXPECT_EQ(selectPressCommand(strip(2)), (Bytes{0x01, 0x0D, 0x02}));
    EXPECT_EQ(inputMonitorToggleCommand(strip(9)), (Bytes{0x01, 0x0E, 0x09}));
}

TEST(CommandBuilder, TurnsAndSeeksPans) {
    EXPECT_EQ(vpotDeltaCommand(strip(4), 1), (Bytes{0x01, 0x07, 0x04, 0x01}));
    EXPECT_EQ(vpotDeltaCommand(strip(4), -1), (Bytes{0x01, 0x07, 0x04, 0xFF}));
    EXPECT_EQ(vpotDeltaCommand(strip(4), -128), (Bytes{0x01, 0x07, 0x04, 0x80}));
    EXPECT_EQ(panModeToggleCommand(), (Bytes{0x01, 0x08}));
    EXPECT_EQ(panSeekCommand(strip(8), 11), (Bytes{0x01, 0x09, 0x08, 0x0B}));
}

TEST(CommandBuilder, MovesThroughTheSession) {
    EXPECT_EQ(bankMoveCommand(Move::channelLeft), (Bytes{0x01, 0x0A, 0x00}));
    EXPECT_EQ(bankMoveCommand(Move::bankLeft), (Bytes{0x01, 0x0A, 0x01}));
    EXPECT_EQ(bankMoveCommand(Move::channelRight), (Bytes{0x01, 0x0A, 0x02}));
    EXPECT_EQ(bankMoveCommand(Move::bankRight), (Bytes{0x01, 0x0A, 0x03}));
    EXPECT_EQ(seekBankCommand(0x0102), (Bytes{0x01, 0x0B, 0x01, 0x02}));
    EXPECT_EQ(recalibrateCommand(), (Bytes{0x01, 0x0C}));
    EXPECT_EQ(visibleRangeCommand(300, 16), (Bytes{0x01, 0x24, 0x01, 0x2C, 0x10}));
}

TEST(CommandBuilder, SetsAutomationModesByTheKeysOfTheSurface) {
    EXPECT_EQ(setAutoModeCommand(strip(15), AutoModeKey::trim), (Bytes{0x01, 0x0F, 0x0F, 0x00}));
    EXPECT_EQ(setAutoModeCommand(strip(0), AutoModeKey::latch), (Bytes{0x01, 0x0F, 0x00, 0x01}));
    EXPECT_EQ(setAutoModeCommand(strip(0), AutoModeKey::read), (Bytes{0x01, 0x0F, 0x00, 0x02}));
    EXPECT_EQ(setAutoModeCommand(strip(0), AutoModeKey::off), (Bytes{0x01, 0x0F, 0x00, 0x03}));
    EXPECT_EQ(setAutoModeCommand(strip(0), AutoModeKey::write), (Bytes{0x01, 0x0F, 0x00, 0x04}));
    EXPECT_EQ(setAutoModeCommand(strip(0), AutoModeKey::touch), (Bytes{0x01, 0x0F, 0x00, 0x05}));
}

TEST(CommandBuilder, ActsOnGroups) {
    EXPECT_EQ(groupAutoModeCommand(AutoModeKey::read, members),
              (Bytes{0x01, 0x20, 0x02, 0x02, 0x00, 0x05, 0x01, 0x00}));
    EXPECT_EQ(groupMuteCommand(true, members), (Bytes{0x01, 0x21, 0x01, 0x02, 0x00, 0x05, 0x01, 0x00}));
    EXPECT_EQ(groupSoloCommand(false, members), (Bytes{0x01, 0x22, 0x00, 0x02, 0x00, 0x05, 0x01, 0x00}));
    EXPECT_EQ(groupFadersCommand(std::vector<std::pair<Member, FaderValue>>{{256, FaderValue::ofRaw(0x1234)}}),
              (Bytes{0x01, 0x23, 0x01, 0x01, 0x00, 0x12, 0x34}));
    EXPECT_EQ(groupFadersCommand({}), (Bytes{0x01, 0x23, 0x00}));
}

TEST(CommandBuilder, PutsAtMost255MembersInAGroup) {
    const std::vector<Member> many(300, 7);
    const Bytes datagram = groupMuteCommand(true, many);
    EXPECT_EQ(datagram.size(), 4u + 2u * 255u);
    EXPECT_EQ(datagram[3], 255);
    const std::vector<std::pair<Member, FaderValue>> entries(300, {7, FaderValue::ofRaw(0)});
    EXPECT_EQ(groupFadersCommand(entries).size(), 3u + 4u * 255u);
}

} // namespace
} // namespace lumbrine::remote
