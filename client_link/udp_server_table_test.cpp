// The table of peers: sending to them, removing them, and staying small under a flood of forged addresses.
#include "client_link/testing/datagrams.h"
#include "client_link/testing/served_peers.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const std::string phonePeer = "192.168.1.20:50000";
const std::string tabletPeer = "192.168.1.30:50000";

class UDPServerTable : public testing::Test, public ServedPeers {
protected:
    bool knows(const std::string& peer) {
        server.send(news, peer);
        return !takeSent().empty();
    }

    // Peers "10.0.0.1:0", "10.0.0.1:1" and so on, one a millisecond.
    void flood(int first, int count) {
        for (int i = first; i < first + count; ++i) {
            pass(0.001);
            from(stranger(i), touch);
        }
        takeSent();
        takeDelivered();
    }

    static std::string stranger(int number) { return "10.0.0.1:" + std::to_string(number); }

    int strangersKnown(int first, int count) {
        int known = 0;
        for (int i = first; i < first + count; ++i)
            known += knows(stranger(i)) ? 1 : 0;
        return known;
    }
};

TEST_F(UDPServerTable, SendsToAPeerItKnows) {
    from(phonePeer, touch);
    from(tabletPeer, touch);
    takeSent();
    server.send(news, tabletPeer);
    EXPECT_THAT(takeSent(), ElementsAre(Pair(tabletPeer, news)));
}

TEST_F(UDPServerTable, SendsNothingToAPeerItDoesNotKnow) {
    from(phonePeer, touch);
    server.send(news, tabletPeer);
    server.send(news, "");
    EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(UDPServerTable, SendsToASilentPeerForAsLongAsItIsNotForgotten) {
    from(phonePeer, touch);
    pass(3600.0);
    EXPECT_TRUE(knows(phonePeer));
}

TEST_F(UDPServerTable, BroadcastsToTheOwnerAlone) {
    from(phonePeer, touch);
    from(tabletPeer, touch);
    takeSent();
    server.broadcast(news);
    EXPECT_THAT(takeSent(), ElementsAre(Pair(phonePeer, news)));
}

TEST_F(UDPServerTable, BroadcastsToNobodyWithoutAnOwner) {
    server.broadcast(news);
    EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(UDPServerTable, BroadcastsUntilTheOwnerIsSilentForSixSeconds) {
    from(phonePeer, touch);
    pass(5.999);
    server.broadcast(news);
    EXPECT_THAT(takeSent(), ElementsAre(Pair(phonePeer, news)));
    pass(0.001);
    server.broadcast(news);
    EXPECT_THAT(takeSent(), IsEmpty());
}

TEST_F(UDPServerTable, ForgetsSilentPeersInABroadcast) {
    from(phonePeer, touch);
    from(tabletPeer, touch);
    pass(2.0);
    from(phonePeer, touch);
    pass(3.999);
    server.broadcast(news);
    takeSent();
    EXPECT_TRUE(knows(tabletPeer));
    pass(0.001);
    server.broadcast(news);
    takeSent();
    EXPECT_FALSE(knows(tabletPeer));
    EXPECT_TRUE(knows(phonePeer));
}

// A thread that received a datagram in time may come to it late.
TEST_F(UDPServerTable, KnowsTheLastOwnerUntilThereIsAnother) {
    from(phonePeer, touch);
    pass(6.0);
    server.broadcast(news);
    EXPECT_TRUE(knows(phonePeer));
    EXPECT_THAT(server.connectedIPs(), IsEmpty());
    from(tabletPeer, touch);
    server.broadcast(news);
    takeSent();
    EXPECT_FALSE(knows(phonePeer));
}

TEST_F(UDPServerTable, ForgetsTheTokenWithThePeer) {
    const Bytes hello{0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, 5};
    from(tabletPeer, hello);
    pass(6.0);
    server.broadcast(news);
    from(phonePeer, hello);
    takeDelivered();
    from(tabletPeer, touch); // would be the same device, had the token been kept
    EXPECT_THAT(takeDelivered(), IsEmpty());
}

TEST_F(UDPServerTable, KeepsRunningWhenSendingFails) {
    from(phonePeer, touch);
    sockets.sendResult = -EHOSTUNREACH;
    server.broadcast(news);
    server.send(news, phonePeer);
    sockets.sendResult = 0;
    server.broadcast(news);
    EXPECT_THAT(takeSent(), ElementsAre(Pair(phonePeer, news)));
}

TEST_F(UDPServerTable, CountsDatagramsThatAFullSocketDrops) {
    from(phonePeer, touch);
    sockets.sendResult = -EAGAIN;
    server.broadcast(news);
    server.send(news, phonePeer);
    from(tabletPeer, touch); // its refusal
    sockets.sendResult = 0;
    server.broadcast(news);
    server.send(news, "10.0.0.1:1"); // nobody
    EXPECT_EQ(server.unsentDatagrams(), 3u);
}

// ---- A system that refuses to send

class UDPServerRefused : public UDPServerTable {
protected:
    UDPServerRefused() {
        server.onSendingRefused = [this](int error) { told.push_back(error); };
    }

    // The phone speaks, and the system's answer to what the server then sends is this.
    void exchange(int sendResult) {
        from(phonePeer, touch);
        sockets.sendResult = sendResult;
        server.broadcast(news);
    }

    std::vector<int> told;
};

TEST_F(UDPServerRefused, IsToldAtTheThirdTimeInARow) {
    exchange(-EHOSTUNREACH);
    exchange(-EHOSTUNREACH);
    EXPECT_THAT(told, IsEmpty());
    exchange(-EHOSTUNREACH);
    EXPECT_THAT(told, ElementsAre(EHOSTUNREACH));
    exchange(-EPERM);
    exchange(-EPERM);
    exchange(-EPERM);
    EXPECT_THAT(told, ElementsAre(EHOSTUNREACH, EPERM));
}

TEST_F(UDPServerRefused, IsNotToldWhenSomethingIsSentMeanwhile) {
    for (const int result : {-EPERM, -EPERM, 0, -EPERM, -EPERM, -EAGAIN, -EPERM, -EPERM})
        exchange(result);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(UDPServerRefused, IsNotToldWhileNothingArrives) {
    exchange(-ENETUNREACH);
    exchange(-ENETUNREACH);
    for (int i = 0; i < 100; ++i)
        server.broadcast(news);
    EXPECT_THAT(told, IsEmpty());
    exchange(-ENETUNREACH);
    EXPECT_THAT(told, ElementsAre(ENETUNREACH));
}

// ---- Addresses

TEST_F(UDPServerTable, ListsTheAddressOfEachLivePeerOnce) {
    from("192.168.1.30:1", touch);
    from("192.168.1.20:1", touch);
    from("192.168.1.20:2", touch);
    from("192.168.1.20:3", touch);
    EXPECT_THAT(server.connectedIPs(), ElementsAre("192.168.1.20", "192.168.1.30"));
}

TEST_F(UDPServerTable, ListsAnAddressOnceEvenIfAnotherComesBetween) {
    from("::1:80", touch);
    from("::1:80:5", touch); // the address ::1:80
    from("::1:90", touch);
    EXPECT_THAT(server.connectedIPs(), ElementsAre("::1", "::1:80"));
}

TEST_F(UDPServerTable, ListsNoAddressOfASilentPeer) {
    from(phonePeer, touch);
    pass(1.0);
    from(tabletPeer, touch);
    pass(4.999);
    EXPECT_THAT(server.connectedIPs(), ElementsAre("192.168.1.20", "192.168.1.30"));
    pass(0.001);
    EXPECT_THAT(server.connectedIPs(), ElementsAre("192.168.1.30"));
    pass(1.0);
    EXPECT_THAT(server.connectedIPs(), IsEmpty());
}

TEST_F(UDPServerTable, AsksForAPeersNameOnlyWhenThePeerChanges) {
    for (int i = 0; i < 100; ++i)
        from(phonePeer, touch);
    EXPECT_EQ(sockets.nameCalls, 1);
    from(tabletPeer, touch);
    from(tabletPeer, touch);
    EXPECT_EQ(sockets.nameCalls, 2);
    from(phonePeer, touch);
    EXPECT_EQ(sockets.nameCalls, 3);
    EXPECT_TRUE(knows(phonePeer) && knows(tabletPeer));
}

TEST_F(UDPServerTable, AsksForTheNameOfTheLongestAddressOnce) {
    const std::string longest = std::string(PeerAddress().storage.size() - 3, '1') + ":80";
    from(longest, touch);
    from(longest, touch);
    EXPECT_EQ(sockets.nameCalls, 1);
}

TEST_F(UDPServerTable, SendsToTheAddressOfTheLastDatagram) {
    from(phonePeer + "#1", touch);
    from(phonePeer + "#2", touch); // other bytes of the same name
    EXPECT_EQ(takeDelivered().size(), 2u);
    server.send(news, phonePeer);
    EXPECT_THAT(takeSent(), ElementsAre(Pair(phonePeer + "#2", news)));
}

// ---- Floods

TEST_F(UDPServerTable, KnowsEveryPeerUpToItsLimit) {
    flood(0, 1024);
    EXPECT_EQ(strangersKnown(0, 1024), 1024);
}

TEST_F(UDPServerTable, ForgetsTheLongestSilentQuarterAtItsLimit) {
    flood(0, 1025);
    EXPECT_TRUE(knows(stranger(0))); // the owner
    EXPECT_EQ(strangersKnown(1, 256), 0);
    EXPECT_EQ(strangersKnown(257, 768), 768);
}

TEST_F(UDPServerTable, ForgetsOnlyTheSilentPeersAtItsLimitIfThereAreAny) {
    flood(0, 1000);
    pass(5.5);
    flood(1000, 25); // when the last one comes, number 524 was silent for 6.0 s
    EXPECT_EQ(strangersKnown(0, 525), 0);
    EXPECT_EQ(strangersKnown(525, 500), 500);
}

TEST_F(UDPServerTable, NeverForgetsTheOwnerInAFlood) {
    from(phonePeer, touch);
    flood(0, 5000); // in five seconds
    EXPECT_EQ(server.liveOwnerKey(), phonePeer);
    EXPECT_TRUE(knows(phonePeer));
    from(phonePeer, touch);
    EXPECT_THAT(takeDelivered(), ElementsAre(Pair(phonePeer, touch)));
}

TEST_F(UDPServerTable, StaysWithinItsLimitInAFlood) {
    from(phonePeer, touch);
    flood(0, 5000);
    EXPECT_LE(strangersKnown(0, 5000), 1023);
    EXPECT_TRUE(knows(stranger(4999)));
}

TEST_F(UDPServerTable, FreesThePlaceOfASilentOwnerInAFlood) {
    flood(0, 1024);
    pass(6.0);
    flood(1024, 1);
    EXPECT_EQ(server.liveOwnerKey(), stranger(1024));
}

TEST_F(UDPServerTable, RefusesAHostFiftyTimesASecond) {
    from(phonePeer, touch);
    for (int i = 0; i < 60; ++i)
        from("192.168.1.30:" + std::to_string(50000 + i), touch);
    EXPECT_EQ(takeSent().size(), 50u);
    pass(0.999);
    from(tabletPeer, touch);
    EXPECT_THAT(takeSent(), IsEmpty());
    pass(0.001);
    from(tabletPeer, touch);
    EXPECT_THAT(takeSent(), ElementsAre(Pair(tabletPeer, busy)));
}

TEST_F(UDPServerTable, AnswersAThousandHostsASecond) {
    from(phonePeer, touch);
    for (int i = 0; i < 2000; ++i)
        from("10.0." + std::to_string(i / 250) + "." + std::to_string(i % 250) + ":1", touch);
    EXPECT_EQ(takeSent().size(), 1000u);
    pass(1.0);
    from(tabletPeer, touch);
    EXPECT_EQ(takeSent().size(), 1u);
}

TEST_F(UDPServerTable, DeliversEveryDatagramOfTheOwnerBesideAFlood) {
    for (int i = 0; i < 100; ++i) {
        from(phonePeer, touch);
        for (int j = 0; j < 100; ++j)
            from(tabletPeer, touch);
    }
    EXPECT_EQ(takeDelivered().size(), 100u);
    EXPECT_EQ(takeSent().size(), 50u);
}

} // namespace
} // namespace lumbrine
