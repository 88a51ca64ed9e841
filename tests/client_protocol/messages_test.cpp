// Both ends of the client protocol were written apart from each other: what the receiver builds, the client must read.
#include "client_link/state_messages.h"
#include "remote/receiver_message.h"

#include <array>

namespace lumbrine {
namespace {

// True when the client's end reads exactly this message from the datagram.
template <typename Message>
void expectRead(const Bytes& datagram, const Message& expected) {
    const auto message = remote::parseReceiverMessage(datagram);
    ASSERT_TRUE(message.has_value()) << ::testing::PrintToString(datagram);
    ASSERT_TRUE(std::holds_alternative<Message>(*message));
    EXPECT_EQ(std::get<Message>(*message), expected);
}

Strip strip(int index) {
    return *Strip::of(index);
}

TEST(ClientProtocolMessages, CarryNamesOfEveryStrip) {
    for (int i = 0; i < stripCount; ++i) {
        expectRead(trackNameMessage(i, "Kic"), remote::TrackName{strip(i), "Kic "});
        expectRead(fullNameMessage(i, "ボーカル"), remote::FullName{strip(i), "ボーカル"});
    }
    expectRead(trackNameMessage(0, ""), remote::TrackName{strip(0), "    "});
    expectRead(trackNameMessage(0, "longer"), remote::TrackName{strip(0), "long"});
    expectRead(fullNameMessage(0, ""), remote::FullName{strip(0), ""});
    expectRead(fullNameMessage(0, std::string(100, 'x')), remote::FullName{strip(0), std::string(48, 'x')});
}

TEST(ClientProtocolMessages, CarryFadersEvenFromBeyondTheirEnds) {
    for (int raw = 0; raw <= FaderValue::fullScale; ++raw) {
        const FaderValue value = FaderValue::ofUnit(raw / 16383.0);
        expectRead(faderMessage(raw % 16, raw / 16383.0), remote::Fader{strip(raw % 16), value});
    }
    expectRead(faderMessage(0, 1.2), remote::Fader{strip(0), FaderValue::ofRaw(16383)});
    expectRead(faderMessage(0, -0.1), remote::Fader{strip(0), FaderValue::ofRaw(0)});
}

TEST(ClientProtocolMessages, CarryMetersAndLights) {
    std::vector<std::uint8_t> levels;
    remote::Meters meters;
    std::vector<StripSwitches> switches;
    remote::Switches lights;
    for (std::uint8_t i = 0; i < stripCount; ++i) {
        levels.push_back(i % 13);
        levels.push_back(static_cast<std::uint8_t>((i + 7) % 13));
        meters.strips.push_back({levels[2u * i], levels[2u * i + 1]});
        switches.push_back({SwitchLight{static_cast<std::uint8_t>(i % 3)},
                            SwitchLight{static_cast<std::uint8_t>(i % 2)},
                            SwitchLight{static_cast<std::uint8_t>((i + 1) % 3)}});
        lights.strips.push_back({remote::Light{static_cast<std::uint8_t>(i % 3)}, i % 2 == 1,
                                 remote::Light{static_cast<std::uint8_t>((i + 1) % 3)}});
        if (i == 7 || i == 15) {
            expectRead(metersMessage(levels), meters);
            expectRead(switchesMessage(switches), lights);
        }
    }
}

TEST(ClientProtocolMessages, CarryPansOfBothSidesAndClampTheirPositions) {
    for (int side = 0; side < 2; ++side)
        for (int position = 0; position <= 11; ++position)
            expectRead(panMessage(9, side, position, position == 6),
                       remote::Pan{strip(9),
                                   remote::PanSide{static_cast<std::uint8_t>(side)},
                                   {static_cast<std::uint8_t>(position), position == 6}});
    expectRead(panMessage(0, 0, -3, false), remote::Pan{strip(0), remote::PanSide::left, {0, false}});
    expectRead(panMessage(0, 0, 15, false), remote::Pan{strip(0), remote::PanSide::left, {11, false}});
    expectRead(panModeMessage(true), remote::PanMode{true});
    expectRead(panModeMessage(false), remote::PanMode{false});
}

TEST(ClientProtocolMessages, CarryTheBankPosition) {
    expectRead(bankPosMessage(0, 24, 8), remote::BankPos{0, 24, 8});
    expectRead(bankPosMessage(-1, 0, 16), remote::BankPos{std::nullopt, 0, 16});
    expectRead(bankPosMessage(70000, 70000, 16), remote::BankPos{0xFFFE, 0xFFFF, 16});
}

TEST(ClientProtocolMessages, CarryWhatEachStripShows) {
    std::array<bool, 16> flags{};
    flags[3] = true;
    std::vector<bool> expected(16, false);
    expected[3] = true;
    expectRead(selectsMessage(flags), remote::Selects{expected});
    expectRead(inputMonsMessage(flags), remote::InputMons{expected});
    std::vector<std::optional<RGBColor>> colors(8);
    colors[1] = 0x000000;
    colors[2] = 0xFF8001;
    expectRead(colorsMessage(colors), remote::Colors{colors});
    const std::vector<std::uint8_t> modes{0, 1, 2, 3, 4, 5, 9, 10, 11, 12};
    expectRead(autoModesMessage(modes), remote::AutoModes{modes});
}

TEST(ClientProtocolMessages, CarryTransportBusyAndPong) {
    for (const bool playing : {false, true})
        for (const bool recording : {false, true})
            expectRead(transportMessage(playing, recording), remote::Transport{playing, recording});
    expectRead(busyMessage(), remote::Busy{});
    expectRead(pongMessage(), remote::Pong{});
}

TEST(ClientProtocolMessages, CarryRowsOfTheSession) {
    expectRead(trackRowMessage(0, {}), remote::TrackRow{});
    const TrackRow row{.fader = 1.0,
                       .mute = true,
                       .solo = false,
                       .record = true,
                       .color = 0x010203,
                       .inputMonitor = true,
                       .select = false,
                       .name = "ボーカル",
                       .comment = "double\ttracked"};
    expectRead(trackRowMessage(999, row), remote::TrackRow{999, FaderValue::ofRaw(16383), true, false, true, 0x010203,
                                                           true, false, "ボーカル", "double\ttracked"});
    const std::string endless(300, 'x');
    const TrackRow longest{.name = endless, .comment = endless};
    expectRead(trackRowMessage(65535, longest),
               remote::TrackRow{.index = 65535, .name = std::string(48, 'x'), .comment = std::string(200, 'x')});
}

TEST(ClientProtocolMessages, CarryTheSessionInChunks) {
    const std::vector<std::uint8_t> modes(130, 9);
    const std::vector<Bytes> autoChunks = sessAutoChunkMessages(modes);
    ASSERT_EQ(autoChunks.size(), 3u);
    expectRead(autoChunks[2], remote::SessAutoChunk{128, {9, 9}});
    std::vector<SessionPan> pans(65, SessionPan{true, 1, 20, true});
    pans[64] = {};
    const std::vector<Bytes> panChunks = sessPanChunkMessages(pans);
    ASSERT_EQ(panChunks.size(), 2u);
    expectRead(panChunks[0],
               remote::SessPanChunk{0, std::vector<remote::SessPan>(64, {remote::PanSide::right, {11, true}})});
    expectRead(panChunks[1], remote::SessPanChunk{64, {remote::SessPan{}}});
}

} // namespace
} // namespace lumbrine
