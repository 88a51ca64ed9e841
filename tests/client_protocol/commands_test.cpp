// Both ends of the client protocol were written apart from each other: what the client builds, the receiver must read.
#include "client_link/client_command.h"
#include "remote/command_builder.h"

#include <stdexcept>

namespace lumbrine {
namespace {

// The command that the receiver's end reads from a datagram; the test fails when it is none of that kind.
template <typename Command>
Command read(const Bytes& datagram) {
    const auto command = parseClientCommand(datagram);
    if (!command || !std::holds_alternative<Command>(*command))
        throw std::runtime_error("read as something else: " + ::testing::PrintToString(datagram));
    return std::get<Command>(*command);
}

template <typename Check>
void forEachStrip(Check check) {
    for (int i = 0; i < stripCount; ++i)
        check(*Strip::of(i), i);
}

TEST(ClientProtocolCommands, OfOneStripArriveForThatStrip) {
    forEachStrip([](Strip strip, int number) {
        EXPECT_EQ(read<FaderTouch>(remote::faderTouchCommand(strip)).strip, number);
        EXPECT_EQ(read<FaderRelease>(remote::faderReleaseCommand(strip)).strip, number);
        EXPECT_EQ(read<MutePress>(remote::mutePressCommand(strip)).strip, number);
        EXPECT_EQ(read<SoloPress>(remote::soloPressCommand(strip)).strip, number);
        EXPECT_EQ(read<RecArmPress>(remote::recArmPressCommand(strip)).strip, number);
        EXPECT_EQ(read<SelectPress>(remote::selectPressCommand(strip)).strip, number);
        EXPECT_EQ(read<InputMonitorToggle>(remote::inputMonitorToggleCommand(strip)).strip, number);
    });
}

TEST(ClientProtocolCommands, CarryEveryFaderValue) {
    for (std::uint16_t raw = 0; raw <= FaderValue::fullScale; ++raw) {
        const auto move = read<FaderMove>(remote::faderMoveCommand(*Strip::of(raw % 16), FaderValue::ofRaw(raw)));
        EXPECT_EQ(move.strip, raw % 16);
        EXPECT_EQ(move.value.raw(), raw);
    }
}

TEST(ClientProtocolCommands, CarryEveryTurnAndEveryRingPosition) {
    forEachStrip([](Strip strip, int number) {
        for (int value = 0; value <= 255; ++value) {
            const auto clicks = static_cast<std::int8_t>(value - 128);
            EXPECT_EQ(read<VpotDelta>(remote::vpotDeltaCommand(strip, clicks)).delta, clicks);
            const auto seek = read<PanSeek>(remote::panSeekCommand(strip, static_cast<std::uint8_t>(value)));
            EXPECT_EQ(seek.strip, number);
            EXPECT_EQ(seek.target, value);
        }
    });
}

TEST(ClientProtocolCommands, WithoutArgumentsArrive) {
    read<Hello>(remote::helloCommand(std::nullopt));
    read<Hello>(remote::helloCommand(~std::uint64_t{0}));
    read<PanModeToggle>(remote::panModeToggleCommand());
    read<Recalibrate>(remote::recalibrateCommand());
}

TEST(ClientProtocolCommands, MoveTheBankTheWayTheySay) {
    EXPECT_EQ(read<BankMove>(remote::bankMoveCommand(remote::Move::channelLeft)).kind, 0);
    EXPECT_EQ(read<BankMove>(remote::bankMoveCommand(remote::Move::bankLeft)).kind, 1);
    EXPECT_EQ(read<BankMove>(remote::bankMoveCommand(remote::Move::channelRight)).kind, 2);
    EXPECT_EQ(read<BankMove>(remote::bankMoveCommand(remote::Move::bankRight)).kind, 3);
}

TEST(ClientProtocolCommands, CarryEveryTrack) {
    for (int track = 0; track <= 0xFFFF; ++track) {
        const auto member = static_cast<remote::Member>(track);
        EXPECT_EQ(read<SeekBank>(remote::seekBankCommand(member)).target, track);
        EXPECT_EQ(read<VisibleRange>(remote::visibleRangeCommand(member, 200)).start, track);
    }
    EXPECT_EQ(read<VisibleRange>(remote::visibleRangeCommand(7, 200)).count, 200);
}

TEST(ClientProtocolCommands, CarryEveryAutomationModeKey) {
    for (std::uint8_t key = 0; key < 6; ++key) {
        const auto set = read<SetAutoMode>(remote::setAutoModeCommand(*Strip::of(15), remote::AutoModeKey{key}));
        EXPECT_EQ(set.strip, 15);
        EXPECT_EQ(set.mode, key);
    }
}

TEST(ClientProtocolCommands, CarryGroupsOfEverySize) {
    std::vector<remote::Member> members;
    std::vector<std::pair<remote::Member, FaderValue>> faders;
    for (int size = 0; size <= 255; ++size) {
        const std::vector<int> expected(members.begin(), members.end());
        EXPECT_EQ(read<GroupMute>(remote::groupMuteCommand(true, members)).members, expected);
        EXPECT_EQ(read<GroupSolo>(remote::groupSoloCommand(false, members)).members, expected);
        EXPECT_EQ(read<GroupAutoMode>(remote::groupAutoModeCommand(remote::AutoModeKey::touch, members)).members,
                  expected);
        const auto group = read<GroupFaders>(remote::groupFadersCommand(faders));
        ASSERT_EQ(group.entries.size(), faders.size());
        for (std::size_t i = 0; i < faders.size(); ++i) {
            EXPECT_EQ(group.entries[i].first, faders[i].first);
            EXPECT_EQ(group.entries[i].second, faders[i].second.unit());
        }
        members.push_back(static_cast<remote::Member>(size * 257));
        faders.emplace_back(members.back(), FaderValue::ofRaw(static_cast<std::uint16_t>(size * 64)));
    }
    EXPECT_TRUE(read<GroupMute>(remote::groupMuteCommand(true, {})).enabled);
    EXPECT_FALSE(read<GroupSolo>(remote::groupSoloCommand(false, {})).enabled);
    EXPECT_EQ(read<GroupAutoMode>(remote::groupAutoModeCommand(remote::AutoModeKey::touch, {})).huiPort, 5);
}

TEST(ClientProtocolCommands, TakeOverIsNoneOfThem) {
    EXPECT_FALSE(parseClientCommand(remote::takeOverCommand()).has_value());
    EXPECT_TRUE(isClientDatagram(remote::takeOverCommand()));
}

} // namespace
} // namespace lumbrine
