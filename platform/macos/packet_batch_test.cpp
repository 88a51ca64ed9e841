#include "platform/macos/packet_batch.h"

#include <numeric>

namespace lumbrine {
namespace {

// The lists that arrive at the other side of the seam.
struct Arrivals {
    std::vector<std::vector<Bytes>> lists;
    MIDIReadBlock read = [this](ByteView list) {
        forEachPacket(
            list, [&packets = lists.emplace_back()](ByteView data) { packets.emplace_back(data.begin(), data.end()); });
    };
};

Bytes counting(std::size_t size) {
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

TEST(PacketBatch, HandsOnThePacketsOfOneDeliveryAsOneListInOrder) {
    Arrivals arrivals;
    PacketBatch batch(arrivals.read);
    batch.add(Bytes{0x90, 0x00, 0x00});
    batch.add(Bytes{0xB0});
    batch.add(Bytes{0xB0, 0x0C, 0x03, 0xB0, 0x2C});
    batch.finish();
    EXPECT_EQ(arrivals.lists, (std::vector<std::vector<Bytes>>{
                                  {{0x90, 0x00, 0x00}, {0xB0}, {0xB0, 0x0C, 0x03, 0xB0, 0x2C}},
                              }));
}

TEST(PacketBatch, PassesOverAPacketWithoutBytes) {
    Arrivals arrivals;
    PacketBatch batch(arrivals.read);
    batch.add({});
    batch.add(Bytes{0xFE});
    batch.add({});
    batch.finish();
    EXPECT_EQ(arrivals.lists, (std::vector<std::vector<Bytes>>{{{0xFE}}}));
}

TEST(PacketBatch, HandsOnNothingWhenThereWasNothing) {
    Arrivals arrivals;
    PacketBatch batch(arrivals.read);
    batch.finish();
    batch.add({});
    batch.finish();
    EXPECT_TRUE(arrivals.lists.empty());
}

TEST(PacketBatch, CutsAPacketToItsFirst256Bytes) {
    Arrivals arrivals;
    PacketBatch batch(arrivals.read);
    const Bytes long300 = counting(300);
    batch.add(long300);
    batch.finish();
    ASSERT_EQ(arrivals.lists.size(), 1U);
    EXPECT_EQ(arrivals.lists[0], (std::vector<Bytes>{Bytes(long300.begin(), long300.begin() + 256)}));
}

TEST(PacketBatch, BeginsAnotherListWhenOneIsFullAndLosesNothing) {
    Arrivals arrivals;
    PacketBatch batch(arrivals.read);
    std::vector<Bytes> given;
    for (std::size_t i = 0; i < 200; ++i) {
        given.push_back(counting(1 + i % 7));
        batch.add(given.back());
    }
    batch.finish();
    EXPECT_GT(arrivals.lists.size(), 1U);
    std::vector<Bytes> arrived;
    for (const auto& list : arrivals.lists) {
        EXPECT_FALSE(list.empty());
        arrived.insert(arrived.end(), list.begin(), list.end());
    }
    EXPECT_EQ(arrived, given);
}

TEST(PacketBatch, ServesOneDeliveryAfterAnother) {
    Arrivals arrivals;
    PacketBatch batch(arrivals.read);
    batch.add(Bytes{1});
    batch.finish();
    batch.add(Bytes{2});
    batch.finish();
    batch.finish();
    EXPECT_EQ(arrivals.lists, (std::vector<std::vector<Bytes>>{{{1}}, {{2}}}));
}

} // namespace
} // namespace lumbrine
