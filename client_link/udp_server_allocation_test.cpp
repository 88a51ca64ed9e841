#include "base/testing/allocation_count.h"
#include "client_link/client_command.h"
#include "client_link/testing/sealing_client.h"

namespace lumbrine {
namespace {

const std::string phone = "::ffff:192.168.1.20:50000";

TEST(UDPServerAllocation, IsSeenByThisTest) {
    const int before = allocationCount();
    const Bytes some(100);
    EXPECT_EQ(allocationCount(), before + 1);
}

TEST(UDPServerAllocation, DeliversAndReadsTheOwnersFaderMovesWithoutOne) {
    ServedPeers peers;
    int moves = 0;
    peers.server.onDatagram = [&moves](ByteView bytes, const Sender&) {
        const auto command = parseClientCommand(bytes);
        if (command && std::holds_alternative<FaderMove>(*command)) ++moves;
    };
    const Bytes move{0x01, 0x01, 0x03, 0x3F, 0xFF};
    const PeerAddress address = peerAt(phone);
    peers.server.handleDatagram(move, address);

    const int before = allocationCount();
    for (int i = 0; i < 1000; ++i)
        peers.server.handleDatagram(move, address);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(moves, 1001);
}

TEST(UDPServerAllocation, DeliversSealedFaderMovesWithoutOne) {
    ServedPeers peers;
    ToySecrets secrets(2);
    peers.server.useSeals(secrets);
    peers.server.setKeys({studioKey});
    SealingClient client(peers, phone, 7);
    client.open();
    int moves = 0;
    peers.server.onDatagram = [&moves](ByteView, const Sender&) { ++moves; };
    std::vector<Bytes> datagrams;
    for (std::uint8_t i = 0; i < 100; ++i)
        datagrams.push_back(client.sealed({0x01, 0x01, 0x03, i, 0xFF}));
    const PeerAddress address = peerAt(phone);

    const int before = allocationCount();
    for (const Bytes& datagram : datagrams)
        peers.server.handleDatagram(datagram, address);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(moves, 100);
}

TEST(UDPServerAllocation, NamesPeersThatTakeTurnsWithoutOne) {
    ServedPeers peers;
    peers.server.onDatagram = nullptr;
    const Bytes move{0x01, 0x01, 0x03, 0x3F, 0xFF};
    const Bytes takeOver{0x01, 0x25};
    const PeerAddress one = peerAt(phone);
    const PeerAddress other = peerAt("::ffff:192.168.1.30:50000");
    for (int i = 0; i < 2; ++i) {
        peers.server.handleDatagram(takeOver, one);
        peers.server.handleDatagram(takeOver, other);
    }
    const int before = allocationCount();
    for (int i = 0; i < 1000; ++i) {
        peers.server.handleDatagram(takeOver, one);
        peers.server.handleDatagram(takeOver, other);
    }
    EXPECT_EQ(allocationCount(), before);
}

} // namespace
} // namespace lumbrine
