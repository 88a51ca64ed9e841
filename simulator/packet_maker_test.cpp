// The packets of a port: how many messages are in one, what realtime bytes do to them, and how a ping looks.
#include "simulator/packet_maker.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

const Bytes pingMessage{0x90, 0x00, 0x00};
const Bytes level{0xA0, 0x01, 0x05};
const Bytes zoneSelect{0xB0, 0x0C, 0x02};
const Bytes muteLit{0xB0, 0x2C, 0x42};
const Bytes nameShown{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 'K', 'i', 'c', 'k', 0xF7};

Bytes joined(const std::vector<Bytes>& packets) {
    Bytes all;
    for (const Bytes& packet : packets)
        all.insert(all.end(), packet.begin(), packet.end());
    return all;
}

Bytes withoutRealtime(Bytes bytes) {
    std::erase_if(bytes, [](std::uint8_t byte) { return byte >= 0xF8; });
    return bytes;
}

TEST(PacketMaker, GivesEachMessageItsPacketWhenNothingIsChosen) {
    PacketMaker maker({}, 1);
    EXPECT_THAT(maker.packetsOf({pingMessage, zoneSelect, muteLit, nameShown}),
                ElementsAre(pingMessage, zoneSelect, muteLit, nameShown));
}

TEST(PacketMaker, PacksMessagesWithThePingAtTheirEndAndSysExAlone) {
    PacketMaker maker({.messagesPerPacket = 3}, 1);
    EXPECT_THAT(maker.packetsOf({pingMessage, zoneSelect, muteLit, nameShown, level, level}),
                ElementsAre(joined({zoneSelect, muteLit}), nameShown, joined({level, level, pingMessage})));
}

TEST(PacketMaker, BeginsAPacketAfterAsManyMessagesAsItHolds) {
    PacketMaker maker({.messagesPerPacket = 2}, 1);
    EXPECT_THAT(maker.packetsOf({zoneSelect, muteLit, zoneSelect, muteLit, level}),
                ElementsAre(joined({zoneSelect, muteLit}), joined({zoneSelect, muteLit}), level));
}

TEST(PacketMaker, PutsRealtimeBytesBetweenMessages) {
    PacketMaker maker({.realtime = RealtimeBytes::between}, 1);
    const std::vector<Bytes> packets = maker.packetsOf(std::vector<Bytes>(100, nameShown));
    EXPECT_EQ(withoutRealtime(joined(packets)), joined(std::vector<Bytes>(100, nameShown)));
    EXPECT_THAT(packets, IsSupersetOf({Bytes{0xF8}, Bytes{0xFE}}));
    EXPECT_EQ(std::ranges::count(packets, nameShown), 100);
}

TEST(PacketMaker, PutsRealtimeBytesIntoMessagesToo) {
    PacketMaker maker({.realtime = RealtimeBytes::within}, 1);
    const std::vector<Bytes> packets = maker.packetsOf(std::vector<Bytes>(100, nameShown));
    EXPECT_EQ(withoutRealtime(joined(packets)), joined(std::vector<Bytes>(100, nameShown)));
    EXPECT_LT(std::ranges::count(packets, nameShown), 100);
    for (const Bytes& packet : packets)
        EXPECT_TRUE(packet.size() == 1 || packet.front() == 0xF0); // never before its first byte
}

TEST(PacketMaker, TurnsPingsAloneIntoNoteOffs) {
    const Bytes reply{0x90, 0x00, 0x7F};
    EXPECT_THAT(PacketMaker({.ping = PingForm::noteOff}, 1).packetsOf({pingMessage, muteLit, reply}),
                ElementsAre(Bytes{0x80, 0x00, 0x40}, muteLit, reply));
    EXPECT_THAT(PacketMaker({.ping = PingForm::noteOffWithoutVelocity}, 1).packetsOf({pingMessage}),
                ElementsAre(Bytes{0x80, 0x00, 0x00}));
}

TEST(PacketMaker, CutsASysExBeforeItsEnd) {
    const Bytes cut = PacketMaker::cutSysEx();
    EXPECT_EQ(cut.front(), 0xF0);
    EXPECT_EQ(std::ranges::count(cut, 0xF7), 0);
}

} // namespace
} // namespace lumbrine
