#include "simulator/surface_message.h"

namespace lumbrine {
namespace {

using from_surface::FaderMoved;
using from_surface::JogTurned;
using from_surface::PingReply;
using from_surface::Reset;
using from_surface::SwitchEdge;
using from_surface::VPotTurned;
using testing::ElementsAre;
using testing::IsEmpty;

using Messages = std::vector<SurfaceMessage>;

Messages decodedInPieces(const Bytes& bytes, const std::vector<std::size_t>& pieces) {
    SurfaceDecoder decoder;
    Messages messages;
    std::size_t at = 0;
    for (const std::size_t piece : pieces) {
        decoder.feed(ByteView(bytes).subspan(at, piece),
                     [&](const SurfaceMessage& message) { messages.push_back(message); });
        at += piece;
    }
    return messages;
}

// Decodes the bytes as a whole, byte by byte and split at each place, and expects the same result.
Messages decoded(const Bytes& bytes) {
    const Messages whole = decodedInPieces(bytes, {bytes.size()});
    EXPECT_EQ(decodedInPieces(bytes, std::vector<std::size_t>(bytes.size(), 1)), whole);
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut)
        EXPECT_EQ(decodedInPieces(bytes, {cut, bytes.size() - cut}), whole) << "cut at " << cut;
    return whole;
}

FaderValue raw(std::uint16_t value) {
    return FaderValue::ofRaw(value);
}

TEST(SurfaceDecoder, ReadsEachKindOfMessage) {
    EXPECT_THAT(decoded({
                    0xFF,                               // it has just appeared
                    0x90, 0x00, 0x7F,                   // reply to a ping
                    0xB0, 0x0F, 0x02, 0xB0, 0x2F, 0x40, // touches fader 2
                    0xB0, 0x02, 0x3F, 0xB0, 0x22, 0x7F, // moves it to 8191
                    0xB0, 0x0F, 0x02, 0xB0, 0x2F, 0x00, // lets it go
                    0xB0, 0x45, 0x43,                   // pot 5, three clicks clockwise
                    0xB0, 0x4B, 0x01,                   // parameter pot, one click the other way
                    0xB0, 0x0D, 0x42,                   // jog wheel, two clicks
                }),
                ElementsAre(Reset{}, PingReply{}, SwitchEdge{2, 0, true}, FaderMoved{2, raw(8191)},
                            SwitchEdge{2, 0, false}, VPotTurned{5, 3}, VPotTurned{11, -1}, JogTurned{2}));
}

TEST(SurfaceDecoder, KeepsTheZoneForSeveralPorts) {
    EXPECT_THAT(decoded({0xB0, 0x0F, 0x0E, 0xB0, 0x2F, 0x44, 0xB0, 0x2F, 0x04, 0xB0, 0x2F, 0x43}),
                ElementsAre(SwitchEdge{0x0E, 4, true}, SwitchEdge{0x0E, 4, false}, SwitchEdge{0x0E, 3, true}));
}

TEST(SurfaceDecoder, UnderstandsRunningStatus) {
    EXPECT_THAT(decoded({0xB0, 0x0F, 0x03, 0x2F, 0x42, 0x2F, 0x02, 0x03, 0x7F, 0x23, 0x60}),
                ElementsAre(SwitchEdge{3, 2, true}, SwitchEdge{3, 2, false}, FaderMoved{3, raw(0x3FE0)}));
}

TEST(SurfaceDecoder, LetsRealtimeBytesPassInsideAMessage) {
    EXPECT_THAT(decoded({0xB0, 0xF8, 0x0F, 0xFE, 0x03, 0xB0, 0x2F, 0xF8, 0x42}), ElementsAre(SwitchEdge{3, 2, true}));
}

TEST(SurfaceDecoder, PassesOverSysExAndOtherChannels) {
    EXPECT_THAT(decoded({
                    0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x0F, 0xF7, // SysEx
                    0x0F, 0x03, 0x2F, 0x42,                         // data that belongs to nothing
                    0xB1, 0x0F, 0x03, 0xB1, 0x2F, 0x42,             // another channel
                    0x80, 0x00, 0x7F,                               // note off
                    0x90, 0x00, 0x00, 0x90, 0x01, 0x7F,             // notes that are no reply
                }),
                IsEmpty());
}

TEST(SurfaceDecoder, NeedsAZoneBeforeAPort) {
    EXPECT_THAT(decoded({0xB0, 0x2F, 0x42}), IsEmpty());
    EXPECT_THAT(decoded({0xB0, 0x0F, 0x1E, 0xB0, 0x2F, 0x42}), IsEmpty()); // one zone too far
    EXPECT_THAT(decoded({0xB0, 0x0F, 0x1D, 0xB0, 0x2F, 0x42}), ElementsAre(SwitchEdge{0x1D, 2, true}));
}

TEST(SurfaceDecoder, TakesOnlyPortStatesOnAndOff) {
    EXPECT_THAT(decoded({0xB0, 0x0F, 0x01, 0x2F, 0x22, 0x2F, 0x62, 0x2F, 0x48, 0x2F, 0x07}),
                ElementsAre(SwitchEdge{1, 7, false}));
}

TEST(SurfaceDecoder, CompletesAFaderMoveWithItsLowHalf) {
    EXPECT_THAT(decoded({0xB0, 0x20, 0x10}), IsEmpty()); // no high half yet
    EXPECT_THAT(decoded({0xB0, 0x00, 0x01}), IsEmpty());
    EXPECT_THAT(decoded({0xB0, 0x00, 0x01, 0xB0, 0x07, 0x7F, 0xB0, 0x20, 0x02, 0xB0, 0x27, 0x7F, 0xB0, 0x20, 0x03}),
                ElementsAre(FaderMoved{0, raw(130)}, FaderMoved{7, raw(16383)}, FaderMoved{0, raw(131)}));
}

TEST(SurfaceDecoder, ReportsNoTurnOfNoClicks) {
    EXPECT_THAT(decoded({0xB0, 0x40, 0x00, 0xB0, 0x40, 0x40, 0xB0, 0x0D, 0x40, 0xB0, 0x4C, 0x41}), IsEmpty());
    EXPECT_THAT(decoded({0xB0, 0x40, 0x7F, 0xB0, 0x40, 0x3F}), ElementsAre(VPotTurned{0, 63}, VPotTurned{0, -63}));
}

TEST(SurfaceDecoder, ForgetsEverythingAtAReset) {
    EXPECT_THAT(decoded({0xB0, 0x0F, 0x03, 0x00, 0x10, 0xFF, 0x2F, 0x42, 0xB0, 0x2F, 0x42, 0xB0, 0x20, 0x10}),
                ElementsAre(Reset{}));
}

TEST(SurfaceDecoder, DropsAMessageThatAnotherStatusCutsShort) {
    EXPECT_THAT(decoded({0xB0, 0x0F, 0x90, 0x00, 0x7F}), ElementsAre(PingReply{}));
}

} // namespace
} // namespace lumbrine
