#include "client_link/state_messages.h"

#include <algorithm>
#include <array>

namespace lumbrine {
namespace {

std::string times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

Bytes part(const Bytes& message, std::size_t first, std::size_t count) {
    const auto begin = message.begin() + static_cast<std::ptrdiff_t>(first);
    return {begin, begin + static_cast<std::ptrdiff_t>(count)};
}

TEST(TrackNameMessage, CarriesFourBytesOfTheName) {
    EXPECT_EQ(trackNameMessage(9, "Kick"), (Bytes{
                                               0x01, 0x10,         // version, TrackName
                                               0x09,               // strip
                                               'K', 'i', 'c', 'k', // name
                                           }));
}

TEST(TrackNameMessage, PadsAShortNameWithBlanks) {
    EXPECT_EQ(trackNameMessage(0, "Bs"), (Bytes{0x01, 0x10, 0x00, 'B', 's', ' ', ' '}));
    EXPECT_EQ(trackNameMessage(0, ""), (Bytes{0x01, 0x10, 0x00, ' ', ' ', ' ', ' '}));
}

TEST(TrackNameMessage, CutsALongNameByBytes) {
    EXPECT_EQ(trackNameMessage(0, "Guitar"), (Bytes{0x01, 0x10, 0x00, 'G', 'u', 'i', 't'}));
    EXPECT_EQ(trackNameMessage(0, "あい"), (Bytes{
                                               0x01, 0x10, 0x00, 0xE3, 0x81, 0x82, // あ
                                               0xE3,                               // the first third of い
                                           }));
}

TEST(MetersMessage, CarriesLeftAndRightOfEachShownStrip) {
    EXPECT_EQ(metersMessage(std::array<std::uint8_t, 4>{12, 11, 0, 3}), (Bytes{
                                                                            0x01, 0x11, // version, Meters
                                                                            0x0C, 0x0B, // strip 0: left, right
                                                                            0x00, 0x03, // strip 1: left, right
                                                                        }));
    EXPECT_EQ(metersMessage(std::array<std::uint8_t, 32>{}).size(), 34u);
}

TEST(FaderMessage, CarriesFourteenBitsTruncated) {
    EXPECT_EQ(faderMessage(11, 0.5), (Bytes{
                                         0x01, 0x12, // version, Fader
                                         0x0B,       // strip
                                         0x1F, 0xFF, // value: 8191
                                     }));
    EXPECT_EQ(faderMessage(0, 0.99999), (Bytes{0x01, 0x12, 0x00, 0x3F, 0xFE}));
}

TEST(FaderMessage, ClampsToItsRange) {
    EXPECT_EQ(faderMessage(0, 1.0), (Bytes{0x01, 0x12, 0x00, 0x3F, 0xFF}));
    EXPECT_EQ(faderMessage(0, 1.2), (Bytes{0x01, 0x12, 0x00, 0x3F, 0xFF}));
    EXPECT_EQ(faderMessage(0, 0.0), (Bytes{0x01, 0x12, 0x00, 0x00, 0x00}));
    EXPECT_EQ(faderMessage(0, -0.1), (Bytes{0x01, 0x12, 0x00, 0x00, 0x00}));
}

TEST(SwitchesMessage, CarriesMuteSoloAndRecordOfEachShownStrip) {
    const std::array<StripSwitches, 3> strips{{
        {.mute = SwitchLight::on, .solo = SwitchLight::off, .record = SwitchLight::blinking},
        {.mute = SwitchLight::blinking, .solo = SwitchLight::on, .record = SwitchLight::off},
        {},
    }};
    EXPECT_EQ(switchesMessage(strips), (Bytes{
                                           0x01, 0x13,       // version, Switches
                                           0x01, 0x00, 0x02, // strip 0: mute on, solo off, record blinking
                                           0x02, 0x01, 0x00, // strip 1: mute blinking, solo on, record off
                                           0x00, 0x00, 0x00, // strip 2
                                       }));
    EXPECT_EQ(switchesMessage(std::array<StripSwitches, 16>{}).size(), 50u);
}

TEST(PanMessage, CarriesSidePositionAndCentre) {
    EXPECT_EQ(panMessage(4, 1, 6, true), (Bytes{
                                             0x01, 0x14, // version, Pan
                                             0x04,       // strip
                                             0x01,       // side: right
                                             0x06,       // ring position
                                             0x01,       // centre
                                         }));
    EXPECT_EQ(panMessage(4, 0, 1, false), (Bytes{0x01, 0x14, 0x04, 0x00, 0x01, 0x00}));
}

TEST(PanMessage, ClampsThePositionToTheRing) {
    EXPECT_EQ(panMessage(0, 0, -1, false)[4], 0);
    EXPECT_EQ(panMessage(0, 0, 0, false)[4], 0);
    EXPECT_EQ(panMessage(0, 0, 11, false)[4], 11);
    EXPECT_EQ(panMessage(0, 0, 12, false)[4], 11);
    EXPECT_EQ(panMessage(0, 0, 15, false)[4], 11);
}

TEST(PanModeMessage, SaysWhichSideTheVPotsShow) {
    EXPECT_EQ(panModeMessage(false), (Bytes{0x01, 0x15, 0x00}));
    EXPECT_EQ(panModeMessage(true), (Bytes{0x01, 0x15, 0x01}));
}

TEST(BankPosMessage, CarriesOffsetTrackCountAndWidth) {
    EXPECT_EQ(bankPosMessage(0x0102, 0x0304, 16), (Bytes{
                                                      0x01, 0x16, // version, BankPos
                                                      0x01, 0x02, // offset
                                                      0x03, 0x04, // tracks
                                                      0x10,       // strips
                                                  }));
    EXPECT_EQ(bankPosMessage(0, 0, 8), (Bytes{0x01, 0x16, 0x00, 0x00, 0x00, 0x00, 0x08}));
}

TEST(BankPosMessage, SendsAnUnknownOffsetAsAllOnes) {
    EXPECT_EQ(part(bankPosMessage(-1, 5, 8), 2, 2), (Bytes{0xFF, 0xFF}));
}

TEST(BankPosMessage, CapsTheOffsetBelowTheUnknownOne) {
    EXPECT_EQ(part(bankPosMessage(0xFFFE, 5, 8), 2, 2), (Bytes{0xFF, 0xFE}));
    EXPECT_EQ(part(bankPosMessage(0xFFFF, 5, 8), 2, 2), (Bytes{0xFF, 0xFE}));
    EXPECT_EQ(part(bankPosMessage(0x10000, 5, 8), 2, 2), (Bytes{0xFF, 0xFE}));
}

TEST(BankPosMessage, CapsTheTrackCount) {
    EXPECT_EQ(part(bankPosMessage(0, 0xFFFF, 8), 4, 2), (Bytes{0xFF, 0xFF}));
    EXPECT_EQ(part(bankPosMessage(0, 0x10000, 8), 4, 2), (Bytes{0xFF, 0xFF}));
}

TEST(SelectsMessage, CarriesOneByteForEachShownStrip) {
    EXPECT_EQ(selectsMessage(std::array<bool, 3>{true, false, true}), (Bytes{0x01, 0x17, 0x01, 0x00, 0x01}));
    EXPECT_EQ(selectsMessage({}), (Bytes{0x01, 0x17}));
}

TEST(FullNameMessage, CarriesTheNameUpToItsEnd) {
    EXPECT_EQ(fullNameMessage(15, "Voxあ"), (Bytes{
                                                0x01, 0x18,       // version, FullName
                                                0x0F,             // strip
                                                'V', 'o', 'x',    // name, to the end of the datagram
                                                0xE3, 0x81, 0x82, // あ
                                            }));
    EXPECT_EQ(fullNameMessage(0, ""), (Bytes{0x01, 0x18, 0x00}));
}

TEST(FullNameMessage, CutsTo48BytesOfWholeCharacters) {
    const Bytes cut = fullNameMessage(0, times(20, "あ"));
    ASSERT_EQ(cut.size(), 3u + 48u);
    EXPECT_EQ(part(cut, 3, 48), bytesOf(times(16, "あ")));
    EXPECT_EQ(fullNameMessage(0, std::string(48, 'x')).size(), 3u + 48u);
    EXPECT_EQ(fullNameMessage(0, std::string(49, 'x')).size(), 3u + 48u);
    EXPECT_EQ(fullNameMessage(0, "x" + times(20, "あ")).size(), 3u + 46u);
}

TEST(ColorsMessage, CarriesFourBytesForEachShownStrip) {
    const std::array<std::optional<RGBColor>, 3> colors{0x12ABEFu, std::nullopt, 0x000000u};
    EXPECT_EQ(colorsMessage(colors), (Bytes{
                                         0x01, 0x19,             // version, Colors
                                         0x01, 0x12, 0xAB, 0xEF, // strip 0: known, red, green, blue
                                         0x00, 0x00, 0x00, 0x00, // strip 1: none
                                         0x01, 0x00, 0x00, 0x00, // strip 2: black
                                     }));
}

TEST(InputMonsMessage, CarriesOneByteForEachShownStrip) {
    EXPECT_EQ(inputMonsMessage(std::array<bool, 2>{false, true}), (Bytes{0x01, 0x1A, 0x00, 0x01}));
}

TEST(TrackRowMessage, CarriesEveryFieldInOrder) {
    const TrackRow row{.fader = 1.0,
                       .mute = true,
                       .solo = false,
                       .record = true,
                       .color = 0x102030,
                       .inputMonitor = true,
                       .select = false,
                       .name = "Vox",
                       .comment = "dry"};
    EXPECT_EQ(trackRowMessage(0x0102, row), (Bytes{
                                                0x01, 0x1B,             // version, TrackRow
                                                0x01, 0x02,             // session index
                                                0x01, 0x3F, 0xFF,       // fader: known, value
                                                0x01, 0x00, 0x01,       // mute, solo, record
                                                0x01, 0x10, 0x20, 0x30, // colour: known, red, green, blue
                                                0x01,                   // input monitor
                                                0x00,                   // select
                                                0x03, 'V',  'o',  'x',  // name: length, text
                                                0x03, 'd',  'r',  'y',  // comment: length, text
                                            }));
}

TEST(TrackRowMessage, HasAPlaceForEachFlag) {
    EXPECT_EQ(trackRowMessage(0, {.mute = true})[7], 1);
    EXPECT_EQ(trackRowMessage(0, {.solo = true})[8], 1);
    EXPECT_EQ(trackRowMessage(0, {.record = true})[9], 1);
    EXPECT_EQ(trackRowMessage(0, {.inputMonitor = true})[14], 1);
    EXPECT_EQ(trackRowMessage(0, {.select = true})[15], 1);
}

TEST(TrackRowMessage, OfAnUnknownTrackIsAllZero) {
    Bytes expected(18, 0x00);
    expected[0] = 0x01; // version
    expected[1] = 0x1B; // TrackRow
    EXPECT_EQ(trackRowMessage(0, {}), expected);
}

TEST(TrackRowMessage, TellsAFaderAtZeroFromAnUnknownOne) {
    EXPECT_EQ(part(trackRowMessage(0, {.fader = 0.0}), 4, 3), (Bytes{0x01, 0x00, 0x00}));
    EXPECT_EQ(part(trackRowMessage(0, {.fader = -0.1}), 4, 3), (Bytes{0x01, 0x00, 0x00}));
    EXPECT_EQ(part(trackRowMessage(0, {.fader = 1.2}), 4, 3), (Bytes{0x01, 0x3F, 0xFF}));
}

TEST(TrackRowMessage, CutsNameAndCommentToWholeCharacters) {
    const std::string name = times(20, "あ");
    const std::string comment = times(70, "あ");
    const Bytes message = trackRowMessage(0, {.name = name, .comment = comment});
    ASSERT_EQ(message.size(), 16u + 1 + 48 + 1 + 198);
    EXPECT_EQ(message[16], 48);
    EXPECT_EQ(part(message, 17, 48), bytesOf(times(16, "あ")));
    EXPECT_EQ(message[65], 198);
    EXPECT_EQ(part(message, 66, 198), bytesOf(times(66, "あ")));
}

TEST(TrackRowMessage, TakesACommentOf200Bytes) {
    const std::string longest(200, 'c');
    const std::string longer(201, 'c');
    EXPECT_EQ(trackRowMessage(0, {.comment = longest})[17], 200);
    EXPECT_EQ(trackRowMessage(0, {.comment = longer})[17], 200);
}

TEST(AutoModesMessage, CarriesOneModeForEachShownStrip) {
    EXPECT_EQ(autoModesMessage(std::array<std::uint8_t, 3>{1, 12, 0}), (Bytes{
                                                                           0x01, 0x1C, // version, AutoModes
                                                                           0x01,       // strip 0: read
                                                                           0x0C,       // strip 1: trim, write
                                                                           0x00,       // strip 2: unknown
                                                                       }));
}

TEST(TransportMessage, CarriesPlayingThenRecording) {
    EXPECT_EQ(transportMessage(true, false), (Bytes{0x01, 0x1D, 0x01, 0x00}));
    EXPECT_EQ(transportMessage(false, true), (Bytes{0x01, 0x1D, 0x00, 0x01}));
}

TEST(SessAutoChunkMessages, CutASessionOf130TracksIntoThreeDatagrams) {
    std::vector<std::uint8_t> modes(130);
    for (std::size_t i = 0; i < modes.size(); ++i)
        modes[i] = static_cast<std::uint8_t>(i);
    const auto messages = sessAutoChunkMessages(modes);
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(part(messages[0], 0, 6), (Bytes{
                                           0x01, 0x1E, // version, SessAutoChunk
                                           0x00, 0x00, // first session index
                                           0x40,       // count
                                           0x00,       // mode of track 0
                                       }));
    EXPECT_EQ(messages[0].size(), 5u + 64u);
    EXPECT_EQ(messages[0].back(), 63);
    EXPECT_EQ(part(messages[1], 0, 6), (Bytes{0x01, 0x1E, 0x00, 0x40, 0x40, 64}));
    EXPECT_EQ(messages[1].size(), 5u + 64u);
    EXPECT_EQ(messages[2], (Bytes{0x01, 0x1E, 0x00, 0x80, 0x02, 128, 129}));
}

TEST(SessAutoChunkMessages, FillTheLastDatagramExactly) {
    EXPECT_EQ(sessAutoChunkMessages(std::vector<std::uint8_t>(64)).size(), 1u);
    EXPECT_EQ(sessAutoChunkMessages(std::vector<std::uint8_t>(65)).size(), 2u);
    EXPECT_EQ(sessAutoChunkMessages(std::vector<std::uint8_t>(128)).size(), 2u);
    EXPECT_TRUE(sessAutoChunkMessages({}).empty());
}

TEST(SessAutoChunkMessages, CarryAFirstIndexOfTwoBytes) {
    const auto messages = sessAutoChunkMessages(std::vector<std::uint8_t>(1000));
    EXPECT_EQ(part(messages.back(), 2, 3), (Bytes{0x03, 0xC0, 0x28})); // 960, 40 tracks
}

TEST(SessPanChunkMessages, CarryThreeBytesForEachTrack) {
    const std::array<SessionPan, 3> pans{{
        {.known = true, .side = 1, .position = 3, .centre = false},
        {.known = true, .side = 0, .position = 6, .centre = true},
        {.known = false, .side = 1, .position = 6, .centre = true},
    }};
    EXPECT_EQ(sessPanChunkMessages(pans), (std::vector<Bytes>{{
                                              0x01, 0x1F,       // version, SessPanChunk
                                              0x00, 0x00,       // first session index
                                              0x03,             // count
                                              0x01, 0x03, 0x00, // track 0: right, position 3
                                              0x00, 0x06, 0x01, // track 1: left, position 6, centre
                                              0x00, 0x00, 0x00, // track 2: unknown
                                          }}));
}

TEST(SessPanChunkMessages, ClampThePositionToTheRing) {
    const std::array<SessionPan, 3> pans{{
        {.known = true, .position = -1},
        {.known = true, .position = 11},
        {.known = true, .position = 12},
    }};
    const Bytes message = sessPanChunkMessages(pans).front();
    EXPECT_EQ(message[6], 0);
    EXPECT_EQ(message[9], 11);
    EXPECT_EQ(message[12], 11);
}

TEST(SessPanChunkMessages, CutASessionOf130TracksIntoThreeDatagrams) {
    const auto messages = sessPanChunkMessages(std::vector<SessionPan>(130));
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages[0].size(), 5u + 64u * 3);
    EXPECT_EQ(part(messages[1], 2, 3), (Bytes{0x00, 0x40, 0x40}));
    EXPECT_EQ(part(messages[2], 2, 3), (Bytes{0x00, 0x80, 0x02}));
    EXPECT_EQ(messages[2].size(), 5u + 2u * 3);
    EXPECT_TRUE(sessPanChunkMessages({}).empty());
}

TEST(Replies, AreHeadersAlone) {
    EXPECT_EQ(busyMessage(), (Bytes{0x01, 0x7D}));
    EXPECT_EQ(pongMessage(), (Bytes{0x01, 0x7F}));
}

TEST(ReceiverMessages, AreKnownByTheirType) {
    const auto isOfReceiver = [](int type) { return (type >= 0x10 && type <= 0x1F) || type == 0x7D || type == 0x7F; };
    for (int type = 0; type <= 0xFF; ++type)
        EXPECT_EQ(isFromReceiver(Bytes{0x01, static_cast<std::uint8_t>(type)}), isOfReceiver(type)) << type;
}

TEST(ReceiverMessages, HaveThisVersionAndAType) {
    EXPECT_FALSE(isFromReceiver({}));
    EXPECT_FALSE(isFromReceiver(Bytes{0x01}));
    EXPECT_FALSE(isFromReceiver(Bytes{0x7D}));
    EXPECT_FALSE(isFromReceiver(Bytes{0x02, 0x7D}));
    EXPECT_TRUE(isFromReceiver(trackRowMessage(3, {.name = "Kick"})));
}

// The reserved storage fits exactly: no second allocation, and nothing left over.
TEST(StateMessages, AreWrittenInOnePiece) {
    const auto inOnePiece = [](const Bytes& message) { return message.capacity() == message.size(); };
    const std::vector<std::uint8_t> bytes(70);
    const std::array<bool, 8> flags{};
    EXPECT_TRUE(inOnePiece(trackNameMessage(3, "Kick")));
    EXPECT_TRUE(inOnePiece(metersMessage(bytes)));
    EXPECT_TRUE(inOnePiece(faderMessage(3, 0.5)));
    EXPECT_TRUE(inOnePiece(switchesMessage(std::vector<StripSwitches>(8))));
    EXPECT_TRUE(inOnePiece(panMessage(3, 0, 5, true)));
    EXPECT_TRUE(inOnePiece(panModeMessage(true)));
    EXPECT_TRUE(inOnePiece(bankPosMessage(0, 20, 8)));
    EXPECT_TRUE(inOnePiece(selectsMessage(flags)));
    EXPECT_TRUE(inOnePiece(fullNameMessage(3, "Kick")));
    EXPECT_TRUE(inOnePiece(colorsMessage(std::vector<std::optional<RGBColor>>(8))));
    EXPECT_TRUE(inOnePiece(inputMonsMessage(flags)));
    EXPECT_TRUE(inOnePiece(trackRowMessage(3, {.name = "Kick", .comment = "close"})));
    EXPECT_TRUE(inOnePiece(autoModesMessage(bytes)));
    EXPECT_TRUE(inOnePiece(transportMessage(true, false)));
    EXPECT_TRUE(inOnePiece(busyMessage()));
    EXPECT_TRUE(inOnePiece(pongMessage()));
    EXPECT_TRUE(std::ranges::all_of(sessAutoChunkMessages(bytes), inOnePiece));
    EXPECT_TRUE(std::ranges::all_of(sessPanChunkMessages(std::vector<SessionPan>(70)), inOnePiece));
}

} // namespace
} // namespace lumbrine
