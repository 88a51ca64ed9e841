#include "base/testing/segmentations.h"
#include "simulator/wire/http2_frame.h"

namespace lumbrine::wire {
namespace {

using testing::ElementsAre;

const Bytes pingAndSettings{
    0x00, 0x00, 0x08, 0x06, 0x01, 0x00, 0x00, 0x00, 0x00, // 8 bytes, PING, ACK, stream 0
    1,    2,    3,    4,    5,    6,    7,    8,          //
    0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, // nothing, SETTINGS
    0x00, 0x00, 0x02, 0x00, 0x09, 0x80, 0x00, 0x01, 0x03, // 2 bytes, DATA, END_STREAM and PADDED, stream 259
    0x01, 0x00,                                           //
};

std::vector<Frame> cut(const std::vector<Bytes>& parts) {
    FrameCutter cutter;
    std::vector<Frame> frames;
    for (const Bytes& part : parts) {
        cutter.add(part);
        while (auto frame = cutter.next())
            frames.push_back(std::move(*frame));
    }
    return frames;
}

TEST(FrameCutter, CutsFramesHoweverTheyArrive) {
    for (const auto& parts : segmentationsOf(pingAndSettings))
        EXPECT_THAT(cut(parts), ElementsAre(Frame{6, 1, 0, {1, 2, 3, 4, 5, 6, 7, 8}}, Frame{4, 0, 0, {}},
                                            Frame{0, 9, 259, {1, 0}})); // the reserved bit is not looked at
}

TEST(FrameCutter, WaitsForTheRestOfAFrame) {
    FrameCutter cutter;
    cutter.add(ByteView(pingAndSettings).first(16));
    EXPECT_EQ(cutter.next(), std::nullopt);
}

TEST(Frame, IsWrittenWithItsLengthTypeFlagsAndStream) {
    Bytes bytes;
    appendFrame(bytes, {1, 5, 0x01020304, {0xAA, 0xBB}});
    EXPECT_THAT(bytes, ElementsAre(0x00, 0x00, 0x02, 0x01, 0x05, 0x01, 0x02, 0x03, 0x04, 0xAA, 0xBB));
}

} // namespace
} // namespace lumbrine::wire
