#include "platform/virtual/toy_secrets.h"
#include "seal/seal_trailer.h"

#include <gtest/gtest.h>

namespace lumbrine::seal {
namespace {

constexpr std::uint64_t device = 7;
const Bytes fader{0x01, 0x01, 0x03, 0x3F, 0xFF};
const Sequence sequence{.count = 5, .time = 9};

class SealTrailer : public testing::Test {
protected:
    Bytes sealed(const Bytes& message) {
        SealedDatagram datagram;
        datagram.make(message, *key, 42, Direction::toReceiver, device, sequence);
        return {datagram.bytes().begin(), datagram.bytes().end()};
    }

    bool isRightlySealed(const Bytes& datagram, Direction direction = Direction::toReceiver,
                         std::uint64_t of = device) {
        const auto parts = splitTrailer(datagram);
        return parts && isRight(*parts, *key, direction, of);
    }

    ToySecrets secrets;
    std::unique_ptr<KeyedHash> key = secrets.keyedHash(Bytes{1, 2, 3});
};

TEST_F(SealTrailer, StandsBehindTheMessageInSixteenBytes) {
    const Bytes datagram = sealed(fader);
    ASSERT_EQ(datagram.size(), fader.size() + 16);
    EXPECT_EQ(Bytes(datagram.begin(), datagram.begin() + 13), (Bytes{
                                                                  0x01, 0x01, 0x03, 0x3F, 0xFF, // the message
                                                                  0xFF, 0x5E, 0xA1,             // mark
                                                                  42,                           // key number
                                                                  0x00, 0x00, 0x14, 0x09,       // count 5, time 9
                                                              }));
}

TEST_F(SealTrailer, IsReadAsItWasMade) {
    const auto parts = splitTrailer(sealed(fader));
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->trailer.keyNumber, 42);
    EXPECT_EQ(parts->trailer.sequence, sequence);
    EXPECT_TRUE(isRightlySealed(sealed(fader)));
}

TEST_F(SealTrailer, IsNoneInAnyTruncation) {
    const Bytes datagram = sealed(fader);
    for (std::size_t size = 0; size < datagram.size(); ++size)
        EXPECT_FALSE(splitTrailer(ByteView(datagram).first(size))) << size;
}

TEST_F(SealTrailer, NeedsAMessageOfTwoBytes) {
    const Bytes datagram = sealed({0x01, 0x0C});
    EXPECT_TRUE(splitTrailer(datagram));
    EXPECT_FALSE(splitTrailer(ByteView(datagram).subspan(1)));
}

TEST_F(SealTrailer, IsWrongWhenAnyByteIsChanged) {
    const Bytes datagram = sealed(fader);
    for (std::size_t i = 0; i < datagram.size(); ++i) {
        if (i == fader.size() + 3) continue; // the key's number only says where to find the key
        Bytes changed = datagram;
        changed[i] ^= 0x10;
        EXPECT_FALSE(isRightlySealed(changed)) << i;
    }
}

TEST_F(SealTrailer, IsWrongInTheOtherDirectionOfAnotherDeviceAndWithAnotherKey) {
    const Bytes datagram = sealed(fader);
    EXPECT_FALSE(isRightlySealed(datagram, Direction::toClient));
    EXPECT_FALSE(isRightlySealed(datagram, Direction::toReceiver, device + 1));
    key = secrets.keyedHash(Bytes{1, 2, 4});
    EXPECT_FALSE(isRightlySealed(datagram));
}

TEST_F(SealTrailer, HoldsTheLongestMessage) {
    EXPECT_TRUE(isRightlySealed(sealed(Bytes(maxMessage, 0x01))));
}

TEST(Sequence, HasTheSendersTimeInEighthsOfASecond) {
    EXPECT_EQ(Sequence::at(TimePoint(seconds(1.3)), 1).time, 10U);
    EXPECT_EQ(Sequence::at(TimePoint(seconds(128.0)), 1).time, 0U);
    const Sequence largest{.count = Sequence::maxCount, .time = Sequence::timeSteps - 1};
    EXPECT_EQ(largest.word(), 0xFFFFFFFF);
    EXPECT_EQ(Sequence::of(largest.word()), largest);
}

} // namespace
} // namespace lumbrine::seal
