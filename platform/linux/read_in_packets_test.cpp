#include "base/midi_packet_list.h"
#include "platform/linux/read_in_packets.h"

namespace lumbrine {
namespace {

std::vector<Bytes> packetsOf(const Bytes& event) {
    std::vector<Bytes> packets;
    readInPackets(event, [&packets](ByteView list) {
        forEachPacket(list, [&packets](ByteView data) { packets.emplace_back(data.begin(), data.end()); });
    });
    return packets;
}

TEST(ReadInPackets, MakesOnePacketOfAMessage) {
    EXPECT_EQ(packetsOf({0x90, 0x00, 0x7F}), (std::vector<Bytes>{{0x90, 0x00, 0x7F}}));
    EXPECT_EQ(packetsOf(Bytes(256, 0x42)), std::vector<Bytes>{Bytes(256, 0x42)});
}

TEST(ReadInPackets, CutsALongEventAndLosesNothing) {
    Bytes event(256, 0x01);
    event.insert(event.end(), 256, 0x02);
    event.push_back(0x03);
    EXPECT_EQ(packetsOf(event), (std::vector<Bytes>{Bytes(256, 0x01), Bytes(256, 0x02), {0x03}}));
}

TEST(ReadInPackets, MakesNothingOfNothing) {
    EXPECT_EQ(packetsOf({}), std::vector<Bytes>{});
}

} // namespace
} // namespace lumbrine
