#include "base/midi_packet_list.h"

#include <cstring>

namespace lumbrine {
namespace {

std::vector<Bytes> packetsOf(ByteView list) {
    std::vector<Bytes> packets;
    forEachPacket(list, [&](ByteView data) { packets.emplace_back(data.begin(), data.end()); });
    return packets;
}

// A list as a system hands it over, of any length.
Bytes listOf(const std::vector<Bytes>& packets) {
    Bytes list(4);
    const auto count = static_cast<std::uint32_t>(packets.size());
    std::memcpy(list.data(), &count, sizeof count);
    for (const Bytes& packet : packets) {
        list.resize((list.size() + 3) / 4 * 4);
        list.insert(list.end(), 8, 0);
        const auto length = static_cast<std::uint16_t>(packet.size());
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(&length);
        list.insert(list.end(), bytes, bytes + 2);
        list.insert(list.end(), packet.begin(), packet.end());
    }
    return list;
}

TEST(MIDIPacketList, HoldsOneMessageAtTheLayoutsOffsets) {
    MIDIPacketList list;
    ASSERT_TRUE(list.add(Bytes{0x90, 0x00, 0x7F}));
    Bytes expected(512, 0);
    expected[0] = 1;  // number of packets; the time stamp at 4-11 is 0
    expected[12] = 3; // length
    expected[14] = 0x90;
    expected[15] = 0x00;
    expected[16] = 0x7F;
    EXPECT_EQ(Bytes(list.bytes().begin(), list.bytes().end()), expected);
}

TEST(MIDIPacketList, BeginsTheNextPacketAtAMultipleOfFour) {
    MIDIPacketList list;
    ASSERT_TRUE(list.add(Bytes{1, 2, 3})); // data ends at 17
    ASSERT_TRUE(list.add(Bytes{4}));       // so the next packet begins at 20
    EXPECT_EQ(list.bytes()[28], 1);
    EXPECT_EQ(list.bytes()[30], 4);
    EXPECT_EQ(packetsOf(list.bytes()), (std::vector<Bytes>{{1, 2, 3}, {4}}));
}

TEST(MIDIPacketList, TakesExactlyWhatFits512Bytes) {
    MIDIPacketList list;
    EXPECT_FALSE(list.add(Bytes(499, 1)));
    EXPECT_TRUE(packetsOf(list.bytes()).empty());
    EXPECT_TRUE(list.add(Bytes(498, 1)));
    EXPECT_FALSE(list.add(Bytes{}));
}

TEST(ForEachPacket, PassesOverEmptyPackets) {
    EXPECT_EQ(packetsOf(listOf({{1}, {}, {2, 3}, {}})), (std::vector<Bytes>{{1}, {2, 3}}));
}

TEST(ForEachPacket, CutsALongPacketTo256BytesAndFindsTheNextOne) {
    const auto packets = packetsOf(listOf({Bytes(300, 7), {9}}));
    ASSERT_EQ(packets.size(), 2u);
    EXPECT_EQ(packets[0], Bytes(256, 7));
    EXPECT_EQ(packets[1], Bytes{9});
}

TEST(ForEachPacket, GivesWholePacketsOnlyWhenTheListEndsEarly) {
    const Bytes list = listOf({{1, 2, 3}, {4, 5, 6}});
    for (std::size_t size = 0; size < list.size(); ++size) {
        const auto packets = packetsOf(ByteView(list).first(size));
        EXPECT_EQ(packets.size(), size < 17 ? 0u : 1u) << size;
    }
}

} // namespace
} // namespace lumbrine
