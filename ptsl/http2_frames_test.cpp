#include "base/testing/segmentations.h"
#include "ptsl/http2_frames.h"

namespace lumbrine {
namespace {

using http2::FrameType;

struct Seen {
    FrameType type;
    std::uint8_t flags;
    std::uint32_t streamID;
    Bytes payload;

    bool operator==(const Seen&) const = default;
};

std::vector<Seen> framesIn(const std::vector<Bytes>& pieces) {
    FrameReader reader;
    std::vector<Seen> seen;
    for (const Bytes& piece : pieces) {
        reader.append(piece);
        while (const auto frame = reader.next())
            seen.push_back(
                {frame->type, frame->flags, frame->streamID, {frame->payload.begin(), frame->payload.end()}});
    }
    return seen;
}

TEST(HTTP2Frames, WriteBigEndianNumbers) {
    EXPECT_EQ(be32(0x01020304), (std::array<std::uint8_t, 4>{1, 2, 3, 4}));
    EXPECT_EQ(be32(std::array<std::uint8_t, 4>{0xFF, 0xFE, 0xFD, 0xFC}), 0xFFFEFDFC);
}

TEST(HTTP2Frames, AreAHeaderOfNineBytesAndAPayload) {
    EXPECT_EQ(writeFrame(FrameType::settings, http2::ack, 0, {}), (Bytes{0, 0, 0, 4, 1, 0, 0, 0, 0}));
    EXPECT_EQ(writeFrame(FrameType::data, http2::endStream, 0x01020304, Bytes{7, 8, 9}), (Bytes{0, 0, 3, // length
                                                                                                0,       // DATA
                                                                                                1,       // END_STREAM
                                                                                                1, 2, 3, 4, // stream
                                                                                                7, 8, 9}));
}

TEST(HTTP2Frames, AreWrittenWithoutTheReservedBit) {
    EXPECT_EQ(writeFrame(FrameType::headers, 0, 0xFFFFFFFF, {}), (Bytes{0, 0, 0, 1, 0, 0x7F, 0xFF, 0xFF, 0xFF}));
}

TEST(HTTP2Frames, AreNeverSplit) {
    const Bytes frame = writeFrame(FrameType::data, 0, 1, Bytes(0x012345));
    EXPECT_EQ(Bytes(frame.begin(), frame.begin() + 3), (Bytes{0x01, 0x23, 0x45}));
    EXPECT_EQ(frame.size(), 9u + 0x012345);
}

TEST(HTTP2Frames, OfABodyHave16384BytesAtMost) {
    const auto framesOf = [](std::size_t size) {
        std::vector<std::pair<std::size_t, std::uint8_t>> frames; // sizes and flags
        Bytes whole;
        Bytes body(size);
        for (std::size_t i = 0; i < size; ++i)
            body[i] = static_cast<std::uint8_t>(i * 7);
        for (const Seen& frame : framesIn({writeBody(5, body)})) {
            EXPECT_EQ(frame.type, FrameType::data);
            EXPECT_EQ(frame.streamID, 5U);
            frames.emplace_back(frame.payload.size(), frame.flags);
            whole.insert(whole.end(), frame.payload.begin(), frame.payload.end());
        }
        EXPECT_EQ(whole, body);
        return frames;
    };
    using testing::ElementsAre;
    using testing::Pair;
    EXPECT_THAT(framesOf(0), ElementsAre(Pair(0, 1)));
    EXPECT_THAT(framesOf(16'384), ElementsAre(Pair(16'384, 1)));
    EXPECT_THAT(framesOf(16'385), ElementsAre(Pair(16'384, 0), Pair(1, 1)));
    EXPECT_THAT(framesOf(40'000), ElementsAre(Pair(16'384, 0), Pair(16'384, 0), Pair(7'232, 1)));
}

TEST(HTTP2Frames, AreReadHoweverTheyArrive) {
    const Bytes stream{0, 0, 0, 4,    0,    0,    0, 0, 0,          // SETTINGS, empty
                       0, 0, 3, 0,    1,    0x80, 0, 0, 5, 7, 8, 9, // DATA on stream 5, reserved bit set
                       0, 0, 1, 0xFA, 0xFF, 0,    0, 0, 1, 0,       // of an unknown type
                       0, 0, 2, 6,    0};                           // the beginning of a PING
    const std::vector<Seen> expected{{FrameType::settings, 0, 0, {}},
                                     {FrameType::data, 1, 5, {7, 8, 9}},
                                     {static_cast<FrameType>(0xFA), 0xFF, 1, {0}}};
    for (const auto& pieces : segmentationsOf(stream))
        EXPECT_EQ(framesIn(pieces), expected);
}

TEST(FrameReader, TakesNoMemoryForWhatIsOnlyAnnounced) {
    FrameReader reader;
    reader.append(Bytes{0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 1, 'x'});
    EXPECT_FALSE(reader.next());
    EXPECT_LE(reader.capacity(), 1024u);
    for (int i = 0; i < 64; ++i)
        reader.append(Bytes(16'384));
    EXPECT_FALSE(reader.next());
    EXPECT_LE(reader.capacity(), 2 * reader.size());
}

TEST(FrameReader, ReadsTheLargestFrame) {
    FrameReader reader;
    reader.append(Bytes{0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 1});
    for (int i = 0; i < 1024; ++i) {
        EXPECT_FALSE(reader.next());
        reader.append(Bytes(16'384));
    }
    const auto frame = reader.next();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->payload.size(), 0xFFFFFFu);
    EXPECT_EQ(reader.size(), 1u);
}

TEST(FrameReader, GivesTheMemoryOfALargeFrameBack) {
    FrameReader reader;
    reader.append(writeFrame(FrameType::data, 0, 1, Bytes(1'000'000)));
    EXPECT_TRUE(reader.next());
    reader.append(Bytes{0});
    EXPECT_LE(reader.capacity(), 64u * 1024);
}

TEST(FrameReader, ForgetsEverythingWhenCleared) {
    FrameReader reader;
    reader.append(Bytes{0, 0, 0, 4, 0});
    reader.clear();
    EXPECT_EQ(reader.size(), 0u);
    EXPECT_EQ(reader.capacity(), 0u);
    reader.append(Bytes{0, 0, 0, 6, 0, 0, 0, 0, 0});
    const auto frame = reader.next();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->type, FrameType::ping);
}

TEST(StreamIDs, AreOddAndCountUp) {
    std::uint32_t next = 1;
    EXPECT_EQ(takeStreamID(next), 1u);
    EXPECT_EQ(takeStreamID(next), 3u);
    next = 0xFFFFFFFD;
    EXPECT_EQ(takeStreamID(next), 0xFFFFFFFD);
}

TEST(StreamIDsDeathTest, EndTheProgramWhenThereAreNoneLeft) {
    for (std::uint32_t next : {0xFFFFFFFEU, 0xFFFFFFFFU})
        EXPECT_DEATH(takeStreamID(next), "");
}

} // namespace
} // namespace lumbrine
