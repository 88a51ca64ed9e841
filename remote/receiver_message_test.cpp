#include "remote/receiver_message.h"
#include "remote/testing/wire_samples.h"

namespace lumbrine::remote {
namespace {

FaderValue raw(int value) {
    return FaderValue::ofRaw(static_cast<std::uint16_t>(value));
}

template <typename Message>
void expectParsed(const Bytes& datagram, const Message& expected) {
    const auto message = parseReceiverMessage(datagram);
    ASSERT_TRUE(message.has_value());
    ASSERT_TRUE(std::holds_alternative<Message>(*message));
    EXPECT_EQ(std::get<Message>(*message), expected);
}

void expectRefused(const Bytes& datagram) {
    EXPECT_FALSE(parseReceiverMessage(datagram).has_value()) << ::testing::PrintToString(datagram);
}

Bytes with(Bytes datagram, std::size_t at, int value) {
    datagram.at(at) = static_cast<std::uint8_t>(value);
    return datagram;
}

const Bytes trackName{0x01, 0x10, 0x03, 'K', 'i', 'c', ' '};
const Bytes meters{0x01, 0x11, 0x00, 0x0C, 0x07, 0x00}; // two strips: 0 and 12, 7 and 0
const Bytes fader{0x01, 0x12, 0x0F, 0x3F, 0xFF};
const Bytes switches{0x01, 0x13, 0x02, 0x00, 0x01, 0x01, 0x01, 0x02};
const Bytes pan{0x01, 0x14, 0x08, 0x01, 0x0B, 0x01};
const Bytes panMode{0x01, 0x15, 0x01};
const Bytes bankPos{0x01, 0x16, 0x01, 0x02, 0x03, 0xE8, 0x10};
const Bytes selects{0x01, 0x17, 0x00, 0x01, 0x00};
const Bytes fullName{0x01, 0x18, 0x02, 0xE3, 0x81, 0x82}; // "あ"
const Bytes colors{0x01, 0x19, 0x01, 0xFF, 0x80, 0x01, 0x00, 0x00, 0x00, 0x00};
const Bytes inputMons{0x01, 0x1A, 0x01, 0x00};
const Bytes trackRow{
    0x01, 0x1B, 0x01, 0x00, // session track 256
    0x01, 0x20, 0x00,       // fader 8192
    0x01, 0x00, 0x01,       // muted, not soloed, armed
    0x01, 0x10, 0x20, 0x30, // colour
    0x01, 0x00,             // input monitor, not selected
    0x02, 'B',  'a',        // name
    0x03, 'l',  'o',  'w',  // comment
};
const Bytes autoModes{0x01, 0x1C, 0x00, 0x05, 0x0C};
const Bytes transport{0x01, 0x1D, 0x01, 0x00};
const Bytes sessAuto{0x01, 0x1E, 0x00, 0x40, 0x02, 0x01, 0x09};
const Bytes sessPan{0x01, 0x1F, 0x00, 0x80, 0x02, 0x00, 0x00, 0x00, 0x01, 0x06, 0x01};

TEST(ReceiverMessage, ReadsATrackNameAsItsFourBytes) {
    expectParsed(trackName, TrackName{strip(3), "Kic "});
}

TEST(ReceiverMessage, ReadsTheMetersOfEachStrip) {
    expectParsed(meters, Meters{{{0, 12}, {7, 0}}});
}

TEST(ReceiverMessage, ReadsAFader) {
    expectParsed(fader, Fader{strip(15), raw(16383)});
}

TEST(ReceiverMessage, ReadsLightsThatAreOffOnOrBlinking) {
    expectParsed(switches, Switches{{{Light::blinking, false, Light::on}, {Light::on, true, Light::blinking}}});
}

TEST(ReceiverMessage, ReadsOneSideOfAPan) {
    expectParsed(pan, Pan{strip(8), PanSide::right, {11, true}});
}

TEST(ReceiverMessage, ReadsThePanSideOfTheVpots) {
    expectParsed(panMode, PanMode{true});
}

TEST(ReceiverMessage, ReadsTheBankPosition) {
    expectParsed(bankPos, BankPos{0x0102, 1000, 16});
}

TEST(ReceiverMessage, ReadsAnUnknownBankPosition) {
    expectParsed(Bytes{0x01, 0x16, 0xFF, 0xFF, 0x00, 0x00, 0x08}, BankPos{std::nullopt, 0, 8});
    expectParsed(Bytes{0x01, 0x16, 0xFF, 0xFE, 0xFF, 0xFF, 0x08}, BankPos{0xFFFE, 0xFFFF, 8});
}

TEST(ReceiverMessage, ReadsSelectsAndInputMonitors) {
    expectParsed(selects, Selects{{false, true, false}});
    expectParsed(inputMons, InputMons{{true, false}});
}

TEST(ReceiverMessage, ReadsAFullNameOfUpTo48Bytes) {
    expectParsed(fullName, FullName{strip(2), "あ"});
    expectParsed(Bytes{0x01, 0x18, 0x02}, FullName{strip(2), ""});
    Bytes longest{0x01, 0x18, 0x00};
    longest.insert(longest.end(), 48, 'x');
    expectParsed(longest, FullName{strip(0), std::string(48, 'x')});
    longest.push_back('x');
    expectRefused(longest);
}

TEST(ReceiverMessage, ReadsColorsAndTheLackOfThem) {
    expectParsed(colors, Colors{{0xFF8001, std::nullopt}});
}

TEST(ReceiverMessage, ReadsASessionTrack) {
    expectParsed(trackRow, TrackRow{256, raw(8192), true, false, true, 0x102030, true, false, "Ba", "low"});
}

TEST(ReceiverMessage, ReadsASessionTrackOfWhichLittleIsKnown) {
    const Bytes bare{0x01, 0x1B, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                     0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    expectParsed(bare, TrackRow{.index = 0});
}

TEST(ReceiverMessage, TakesTheLongestNameAndCommentOfARowAndNoLonger) {
    const auto rowOf = [](std::size_t nameBytes, std::size_t commentBytes) {
        Bytes row(trackRow.begin(), trackRow.begin() + 16);
        row.push_back(static_cast<std::uint8_t>(nameBytes));
        row.insert(row.end(), nameBytes, 'n');
        row.push_back(static_cast<std::uint8_t>(commentBytes));
        row.insert(row.end(), commentBytes, 'c');
        return row;
    };
    EXPECT_TRUE(parseReceiverMessage(rowOf(48, 200)).has_value());
    expectRefused(rowOf(49, 200));
    expectRefused(rowOf(48, 201));
}

TEST(ReceiverMessage, ReadsAutomationModes) {
    expectParsed(autoModes, AutoModes{{0, 5, 12}});
    expectRefused(with(autoModes, 2, 6));
    expectRefused(with(autoModes, 2, 8));
    expectRefused(with(autoModes, 2, 13));
}

TEST(ReceiverMessage, ReadsTheTransport) {
    expectParsed(transport, Transport{true, false});
}

TEST(ReceiverMessage, ReadsChunksOfTheSession) {
    expectParsed(sessAuto, SessAutoChunk{64, {1, 9}});
    expectParsed(sessPan, SessPanChunk{128, {{}, {PanSide::right, {6, true}}}});
    EXPECT_FALSE(SessPan{}.known());
    EXPECT_TRUE((SessPan{PanSide::left, {6, true}}.known()));
}

TEST(ReceiverMessage, TakesChunksOfOneTo64Tracks) {
    Bytes chunk{0x01, 0x1E, 0x00, 0x00, 64};
    chunk.insert(chunk.end(), 64, 1);
    EXPECT_TRUE(parseReceiverMessage(chunk).has_value());
    chunk[4] = 65;
    chunk.push_back(1);
    expectRefused(chunk);
    expectRefused(Bytes{0x01, 0x1E, 0x00, 0x00, 0x00});
}

TEST(ReceiverMessage, RefusesAChunkAfterTheLastIndex) {
    EXPECT_TRUE(parseReceiverMessage(Bytes{0x01, 0x1E, 0xFF, 0xFF, 0x01, 0x01}).has_value());
    expectRefused(Bytes{0x01, 0x1E, 0xFF, 0xFF, 0x02, 0x01, 0x01});
}

TEST(ReceiverMessage, ReadsBusyAndPong) {
    expectParsed(Bytes{0x01, 0x7D}, Busy{});
    expectParsed(Bytes{0x01, 0x7F}, Pong{});
}

TEST(ReceiverMessage, RefusesOtherVersionsAndUnknownTypes) {
    expectRefused(with(fader, 0, 0x02));
    for (int type = 0; type <= 0xFF; ++type) {
        const bool known = (type >= 0x10 && type <= 0x1F) || type == 0x7D || type == 0x7F;
        if (!known) expectRefused(Bytes{0x01, static_cast<std::uint8_t>(type)});
    }
}

TEST(ReceiverMessage, RefusesStripsThatDoNotExist) {
    for (const Bytes& datagram : {trackName, fader, pan, fullName})
        expectRefused(with(datagram, 2, 16));
}

TEST(ReceiverMessage, RefusesMoreStripsThanThereAre) {
    EXPECT_TRUE(parseReceiverMessage(Bytes{0x01, 0x16, 0, 0, 0, 0, 16}).has_value());
    expectRefused(Bytes{0x01, 0x16, 0, 0, 0, 0, 17});
    expectRefused(Bytes{0x01, 0x16, 0, 0, 0, 0, 0});
    Bytes seventeen{0x01, 0x17};
    seventeen.insert(seventeen.end(), 17, 0);
    expectRefused(seventeen);
    seventeen.pop_back();
    EXPECT_TRUE(parseReceiverMessage(seventeen).has_value());
}

TEST(ReceiverMessage, RefusesValuesOutOfRange) {
    expectRefused(with(meters, 2, 13));
    expectRefused(with(meters, 3, 13));
    expectRefused(with(fader, 3, 0x40)); // 16384 and more
    expectRefused(with(switches, 2, 3));
    expectRefused(with(switches, 3, 2)); // solo never blinks
    expectRefused(with(switches, 4, 3));
    expectRefused(with(pan, 3, 2));
    expectRefused(with(pan, 4, 12));
    expectRefused(with(pan, 5, 2));
    expectRefused(with(panMode, 2, 2));
    expectRefused(with(selects, 2, 2));
    expectRefused(with(inputMons, 2, 2));
    expectRefused(with(colors, 2, 2));
    expectRefused(with(colors, 2, 0)); // no colour, and yet its bytes
    expectRefused(with(transport, 2, 2));
    expectRefused(with(transport, 3, 2));
    expectRefused(with(sessAuto, 5, 7));
    expectRefused(with(sessPan, 8, 2));
    expectRefused(with(sessPan, 9, 12));
    expectRefused(with(sessPan, 10, 2));
}

TEST(ReceiverMessage, RefusesRowsWithAnythingOutOfRange) {
    expectRefused(with(trackRow, 4, 0)); // fader unknown, and yet its bytes
    expectRefused(with(trackRow, 4, 2));
    expectRefused(with(trackRow, 5, 0x40));
    for (const std::size_t flag : {7u, 8u, 9u, 10u, 14u, 15u})
        expectRefused(with(trackRow, flag, 2));
}

TEST(ReceiverMessage, OfOneLengthIsRefusedInEveryOther) {
    for (const Bytes& whole : {trackName, fader, pan, panMode, bankPos, trackRow, transport, sessAuto, sessPan,
                               Bytes{0x01, 0x7D}, Bytes{0x01, 0x7F}}) {
        for (std::size_t size = 0; size < whole.size(); ++size)
            expectRefused(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        Bytes longer = whole;
        longer.push_back(0);
        expectRefused(longer);
    }
}

TEST(ReceiverMessage, OfOneEntryForEachStripIsRefusedWhenItHasNoneOrAPartOfOne) {
    for (const auto& [whole, width] : std::vector<std::pair<Bytes, std::size_t>>{
             {meters, 2}, {switches, 3}, {selects, 1}, {colors, 4}, {inputMons, 1}, {autoModes, 1}}) {
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            const bool wholeEntries = size > 2 && (size - 2) % width == 0;
            EXPECT_EQ(parseReceiverMessage(cut).has_value(), wholeEntries) << ::testing::PrintToString(cut);
        }
    }
}

} // namespace
} // namespace lumbrine::remote
