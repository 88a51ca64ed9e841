#include "client_link/client_command.h"
#include "client_link/testing/describe_command.h"

#include <map>
#include <set>

namespace lumbrine {
namespace {

std::string parsed(const Bytes& datagram) {
    return describe(parseClientCommand(datagram));
}

TEST(ClientCommand, ReadsAHelloWithAndWithoutToken) {
    EXPECT_EQ(parsed({0x01, 0x00}), "Hello");
    EXPECT_EQ(parsed({
                  0x01, 0x00,                                     // version, Hello
                  0x00, 0x00, 0x00, 0x00, 0xCA, 0xFE, 0xBA, 0xBE, // device token
              }),
              "Hello");
}

TEST(ClientCommand, ReadsAFaderMoveOnEitherSurface) {
    EXPECT_EQ(parsed({
                  0x01, 0x01, // version, FaderMove
                  0x03,       // strip
                  0x3F, 0xFF, // value
              }),
              "FaderMove strip 3 value 16383");
    EXPECT_EQ(parsed({0x01, 0x01, 0x0B, 0x20, 0x00}), "FaderMove strip 11 value 8192");
}

TEST(ClientCommand, GivesAFaderMoveAsAPartOfFullScale) {
    const auto full = parseClientCommand(Bytes{0x01, 0x01, 0x03, 0x3F, 0xFF});
    EXPECT_EQ(std::get<FaderMove>(*full).value.unit(), 1.0);
    const auto half = parseClientCommand(Bytes{0x01, 0x01, 0x0B, 0x20, 0x00});
    EXPECT_NEAR(std::get<FaderMove>(*half).value.unit(), 0.500030519, 1e-9);
}

TEST(ClientCommand, PassesOnAFaderValueBeyondFullScale) {
    EXPECT_EQ(parsed({0x01, 0x01, 0x00, 0xFF, 0xFF}), "FaderMove strip 0 value 65535");
}

TEST(ClientCommand, ReadsTheMessagesThatCarryAStripAlone) {
    const std::map<std::uint8_t, std::string> names{
        {0x02, "FaderTouch"},  {0x03, "FaderRelease"}, {0x04, "MutePress"},          {0x05, "SoloPress"},
        {0x06, "RecArmPress"}, {0x0D, "SelectPress"},  {0x0E, "InputMonitorToggle"},
    };
    for (const auto& [opcode, name] : names) {
        EXPECT_EQ(parsed({0x01, opcode, 0x00}), name + " strip 0");
        EXPECT_EQ(parsed({0x01, opcode, 0x0F}), name + " strip 15");
        EXPECT_EQ(parsed({0x01, opcode, 0xFF}), name + " strip 255"); // the parser does not check the range
    }
}

TEST(ClientCommand, ReadsAVpotDeltaAsASignedNumber) {
    EXPECT_EQ(parsed({
                  0x01, 0x07, // version, VpotDelta
                  0x02,       // strip
                  0xFF,       // clicks, two's complement
              }),
              "VpotDelta strip 2 delta -1");
    EXPECT_EQ(parsed({0x01, 0x07, 0x02, 0x01}), "VpotDelta strip 2 delta 1");
    EXPECT_EQ(parsed({0x01, 0x07, 0x02, 0x7F}), "VpotDelta strip 2 delta 127");
    EXPECT_EQ(parsed({0x01, 0x07, 0x02, 0x80}), "VpotDelta strip 2 delta -128");
}

TEST(ClientCommand, ReadsTheMessagesWithoutBody) {
    EXPECT_EQ(parsed({0x01, 0x08}), "PanModeToggle");
    EXPECT_EQ(parsed({0x01, 0x0C}), "Recalibrate");
}

TEST(ClientCommand, DoesNotCheckTheRangeOfAPanSeek) {
    EXPECT_EQ(parsed({
                  0x01, 0x09, // version, PanSeek
                  0x05,       // strip
                  0x0B,       // ring position
              }),
              "PanSeek strip 5 target 11");
    EXPECT_EQ(parsed({0x01, 0x09, 0x05, 0x00}), "PanSeek strip 5 target 0");
    EXPECT_EQ(parsed({0x01, 0x09, 0x10, 0x0C}), "PanSeek strip 16 target 12");
}

TEST(ClientCommand, DoesNotCheckTheRangeOfABankMove) {
    EXPECT_EQ(parsed({0x01, 0x0A, 0x03}), "BankMove kind 3");
    EXPECT_EQ(parsed({0x01, 0x0A, 0xFF}), "BankMove kind 255");
}

TEST(ClientCommand, ReadsASeekBank) {
    EXPECT_EQ(parsed({
                  0x01, 0x0B, // version, SeekBank
                  0x01, 0x02, // track index
              }),
              "SeekBank target 258");
    EXPECT_EQ(parsed({0x01, 0x0B, 0xFF, 0xFF}), "SeekBank target 65535");
}

TEST(ClientCommand, ReadsASetAutoModeWithinItsRangesOnly) {
    EXPECT_EQ(parsed({
                  0x01, 0x0F, // version, SetAutoMode
                  0x0F,       // strip
                  0x05,       // mode
              }),
              "SetAutoMode strip 15 mode 5");
    EXPECT_EQ(parsed({0x01, 0x0F, 0x00, 0x00}), "SetAutoMode strip 0 mode 0");
    EXPECT_EQ(parsed({0x01, 0x0F, 0x10, 0x05}), "nothing");
    EXPECT_EQ(parsed({0x01, 0x0F, 0x0F, 0x06}), "nothing");
    EXPECT_EQ(parsed({0x01, 0x0F, 0xFF, 0xFF}), "nothing");
}

TEST(ClientCommand, ReadsAGroupAutoModeWithItsMembersInOrder) {
    EXPECT_EQ(parsed({
                  0x01, 0x20, // version, GroupAutoMode
                  0x04,       // port of the mode's button
                  0x03,       // count
                  0x00, 0x07, // member
                  0x00, 0x02, // member
                  0x00, 0x07, // member, again
              }),
              "GroupAutoMode port 4 members 7 2 7");
    EXPECT_EQ(parsed({0x01, 0x20, 0xFF, 0x00}), "GroupAutoMode port 255 members");
}

TEST(ClientCommand, ReadsAGroupMuteOfTwoTracks) {
    EXPECT_EQ(parsed({
                  0x01, 0x21, // version, GroupMute
                  0x01,       // enabled
                  0x02,       // count
                  0x00, 0x05, // member
                  0x01, 0x00, // member
              }),
              "GroupMute on members 5 256");
}

TEST(ClientCommand, DropsAGroupMuteThatLacksOneByte) {
    EXPECT_EQ(parsed({0x01, 0x21, 0x01, 0x02, 0x00, 0x05, 0x01}), "nothing");
}

TEST(ClientCommand, TakesAnyEnabledByteButZeroAsOn) {
    EXPECT_EQ(parsed({0x01, 0x21, 0x00, 0x00}), "GroupMute off members");
    EXPECT_EQ(parsed({0x01, 0x21, 0xFF, 0x00}), "GroupMute on members");
    EXPECT_EQ(parsed({0x01, 0x22, 0x00, 0x01, 0xFF, 0xFF}), "GroupSolo off members 65535");
    EXPECT_EQ(parsed({0x01, 0x22, 0x02, 0x01, 0x00, 0x00}), "GroupSolo on members 0");
}

TEST(ClientCommand, ReadsGroupFaders) {
    EXPECT_EQ(parsed({
                  0x01, 0x23, // version, GroupFaders
                  0x02,       // count
                  0x00, 0x05, // member
                  0x3F, 0xFF, // value
                  0x01, 0x00, // member
                  0x00, 0x00, // value
              }),
              "GroupFaders 5=1 256=0");
    EXPECT_EQ(parsed({0x01, 0x23, 0x00}), "GroupFaders");
    EXPECT_EQ(parsed({0x01, 0x23, 0x01, 0x00, 0x05, 0x3F}), "nothing");
}

TEST(ClientCommand, ReadsAVisibleRange) {
    EXPECT_EQ(parsed({
                  0x01, 0x24, // version, VisibleRange
                  0x01, 0x2C, // first track index
                  0x10,       // count
              }),
              "VisibleRange start 300 count 16");
}

TEST(ClientCommand, IgnoresBytesAfterTheMessage) {
    EXPECT_EQ(parsed({0x01, 0x01, 0x03, 0x3F, 0xFF, 0xEE}), "FaderMove strip 3 value 16383");
    EXPECT_EQ(parsed({0x01, 0x21, 0x01, 0x01, 0x00, 0x05, 0xEE, 0xEE}), "GroupMute on members 5");
    EXPECT_EQ(parsed({0x01, 0x23, 0x00, 0xEE}), "GroupFaders");
}

TEST(ClientCommand, KnowsNoTakeOver) {
    EXPECT_EQ(parsed({0x01, 0x25}), "nothing"); // the owner rule is the server's
}

TEST(ClientCommand, KnowsVersionOneOnly) {
    for (int version = 0; version < 256; ++version) {
        const Bytes hello{static_cast<std::uint8_t>(version), 0x00};
        EXPECT_EQ(parseClientCommand(hello).has_value(), version == 1) << version;
        EXPECT_EQ(isClientDatagram(hello), version == 1) << version;
    }
}

TEST(ClientCommand, CountsAsASignOfLifeFromTwoBytesOnWhateverTheOpcode) {
    EXPECT_FALSE(isClientDatagram(Bytes{}));
    EXPECT_FALSE(isClientDatagram(Bytes{0x01}));
    for (int opcode = 0; opcode < 256; ++opcode)
        EXPECT_TRUE(isClientDatagram(Bytes{0x01, static_cast<std::uint8_t>(opcode)}));
}

// Every opcode at every length up to 16 bytes. The body is zero, so that group counts are 0 and all ranges are met.
TEST(ClientCommand, ReadsEachOpcodeFromItsMinimumLengthOn) {
    const std::map<int, std::size_t> minimums{
        {0x00, 2}, {0x01, 5}, {0x02, 3}, {0x03, 3}, {0x04, 3}, {0x05, 3}, {0x06, 3},
        {0x07, 4}, {0x08, 2}, {0x09, 4}, {0x0A, 3}, {0x0B, 4}, {0x0C, 2}, {0x0D, 3},
        {0x0E, 3}, {0x0F, 4}, {0x20, 4}, {0x21, 4}, {0x22, 4}, {0x23, 3}, {0x24, 5},
    };
    for (int opcode = 0; opcode < 256; ++opcode) {
        const auto known = minimums.find(opcode);
        // What an earlier datagram left behind this one would do for its missing bytes.
        Bytes buffer{0x01, static_cast<std::uint8_t>(opcode)};
        buffer.resize(32, 0x00);
        for (std::size_t length = 0; length <= 16; ++length) {
            const ByteView datagram = ByteView(buffer).first(length);
            const bool expected = known != minimums.end() && length >= known->second;
            EXPECT_EQ(parseClientCommand(datagram).has_value(), expected) << opcode << " at " << length;
        }
    }
}

TEST(ClientCommand, GivesEachOpcodeADifferentMessage) {
    std::set<std::size_t> kinds;
    for (int opcode = 0; opcode < 256; ++opcode) {
        Bytes datagram{0x01, static_cast<std::uint8_t>(opcode)};
        datagram.resize(16, 0x00);
        const auto command = parseClientCommand(datagram);
        if (!command) continue;
        EXPECT_TRUE(kinds.insert(command->index()).second) << opcode;
    }
    EXPECT_EQ(kinds.size(), std::variant_size_v<ClientCommand>);
}

struct GroupLayout {
    std::uint8_t opcode;
    std::size_t countAt;
    std::size_t entrySize;
};

class GroupCommand : public testing::TestWithParam<GroupLayout> {};

// Every count, with datagrams around the length that it needs and far below it.
TEST_P(GroupCommand, NeedsExactlyAsManyBytesAsItsCountSays) {
    const auto [opcode, countAt, entrySize] = GetParam();
    for (std::size_t count = 0; count < 256; ++count) {
        Bytes whole{0x01, opcode, 0x00, 0x00};
        whole.resize(countAt + 1);
        whole[countAt] = static_cast<std::uint8_t>(count);
        whole.resize(countAt + 1 + count * entrySize + 1, 0x00);

        const ByteView bytes(whole);
        EXPECT_TRUE(parseClientCommand(bytes).has_value()) << count << ", one byte more";
        EXPECT_TRUE(parseClientCommand(bytes.first(bytes.size() - 1)).has_value()) << count;
        EXPECT_FALSE(parseClientCommand(bytes.first(bytes.size() - 2)).has_value()) << count << ", one byte less";
        EXPECT_FALSE(parseClientCommand(bytes.first(countAt)).has_value()) << count << ", without its count";
    }
}

TEST_P(GroupCommand, IsReadAtNoPlaceWhereItIsCut) {
    const auto [opcode, countAt, entrySize] = GetParam();
    Bytes whole{0x01, opcode, 0x01, 0x01};
    whole.resize(countAt + 1);
    whole[countAt] = 10;
    whole.resize(countAt + 1 + 10 * entrySize, 0x01);
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(parseClientCommand(ByteView(whole).first(length)).has_value()) << length;
    EXPECT_TRUE(parseClientCommand(whole).has_value());
}

INSTANTIATE_TEST_SUITE_P(Layouts, GroupCommand,
                         testing::Values(GroupLayout{0x20, 3, 2}, GroupLayout{0x21, 3, 2}, GroupLayout{0x22, 3, 2},
                                         GroupLayout{0x23, 2, 4}));

TEST(ClientCommand, ReadsTheLargestGroups) {
    Bytes members{0x01, 0x20, 0x01, 0xFF};
    members.resize(4 + 255 * 2, 0x01);
    EXPECT_EQ(std::get<GroupAutoMode>(*parseClientCommand(members)).members, std::vector<int>(255, 0x0101));

    Bytes faders{0x01, 0x23, 0xFF};
    faders.resize(3 + 255 * 4, 0x00);
    const auto command = parseClientCommand(faders);
    EXPECT_EQ(std::get<GroupFaders>(*command).entries.size(), 255u);
}

// A view into the middle of a larger buffer: bytes after its end are not read.
TEST(ClientCommand, NeverReadsPastTheEndOfTheDatagram) {
    const Bytes buffer{0x01, 0x21, 0x01, 0x02, 0x00, 0x05, 0x01, 0x00};
    for (std::size_t length = 0; length < buffer.size(); ++length)
        EXPECT_FALSE(parseClientCommand(ByteView(buffer).first(length)).has_value()) << length;
}

} // namespace
} // namespace lumbrine
