// The owner rule, datagram by datagram.
#include "client_link/testing/datagrams.h"
#include "client_link/testing/served_peers.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const std::string phone = "::ffff:192.168.1.20:50000";
const std::string samePhone = "::ffff:192.168.1.20:50001"; // the same device after a restart
const std::string tablet = "::ffff:192.168.1.30:50000";
const std::string self = "::ffff:192.168.1.7:52700"; // the server's own socket

Bytes helloWith(std::uint8_t token) {
    return {
        0x01, 0x00,                       // version, Hello
        0x80, 0,    0, 0, 0, 0, 0, token, // device token
    };
}
const Bytes helloWithZeroToken{0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, 0};

class UDPServerOwner : public testing::Test, public ServedPeers {
protected:
    void expectDelivered(const std::string& peer, const Bytes& bytes) {
        from(peer, bytes);
        EXPECT_THAT(takeDelivered(), ElementsAre(Pair(peer, bytes)));
        EXPECT_THAT(takeSent(), IsEmpty());
    }

    void expectRefused(const std::string& peer, const Bytes& bytes) {
        from(peer, bytes);
        EXPECT_THAT(takeDelivered(), IsEmpty());
        EXPECT_THAT(takeSent(), ElementsAre(Pair(peer, busy)));
    }

    void expectIgnored(const std::string& peer, const Bytes& bytes) {
        from(peer, bytes);
        EXPECT_THAT(takeDelivered(), IsEmpty());
        EXPECT_THAT(takeSent(), IsEmpty());
    }
};

TEST_F(UDPServerOwner, IsTheFirstPeerThatSends) {
    EXPECT_EQ(server.liveOwnerKey(), std::nullopt);
    expectDelivered(phone, touch);
    EXPECT_EQ(server.liveOwnerKey(), phone);
    EXPECT_EQ(server.ownerIP(), "::ffff:192.168.1.20");
}

TEST_F(UDPServerOwner, IsTheFirstPeerThatSendsAnything) {
    expectDelivered(phone, {0xFF});
    EXPECT_EQ(server.liveOwnerKey(), phone);
}

TEST_F(UDPServerOwner, GetsItsDatagramsDeliveredWithoutAReply) {
    expectDelivered(phone, touch);
    expectDelivered(phone, {0xFF});
    expectDelivered(phone, takeOver);
}

TEST_F(UDPServerOwner, RefusesEachDatagramOfASecondPeer) {
    expectDelivered(phone, touch);
    for (int i = 0; i < 3; ++i)
        expectRefused(tablet, touch);
    EXPECT_EQ(server.liveOwnerKey(), phone);
    expectDelivered(phone, touch);
}

TEST_F(UDPServerOwner, RefusesTheSamePhoneFromAnotherPortWithoutAToken) {
    expectDelivered(phone, touch);
    expectRefused(samePhone, touch);
}

TEST_F(UDPServerOwner, IsStillInControlJustBeforeSixSecondsOfSilence) {
    expectDelivered(phone, touch);
    pass(5.999);
    expectRefused(tablet, touch);
    EXPECT_EQ(server.liveOwnerKey(), phone);
}

TEST_F(UDPServerOwner, LosesControlAfterSixSecondsOfSilence) {
    expectDelivered(phone, touch);
    pass(6.0);
    expectDelivered(tablet, touch);
    EXPECT_EQ(server.liveOwnerKey(), tablet);
    expectRefused(phone, touch);
}

TEST_F(UDPServerOwner, StaysInControlForSixSecondsFromEachDatagram) {
    expectDelivered(phone, touch);
    pass(5.0);
    expectDelivered(phone, {0x00});
    pass(5.999);
    expectRefused(tablet, touch);
}

TEST_F(UDPServerOwner, IsReportedOnlyWhileLive) {
    expectDelivered(phone, touch);
    pass(5.999);
    EXPECT_EQ(server.ownerIP(), "::ffff:192.168.1.20");
    pass(0.001);
    EXPECT_EQ(server.ownerIP(), std::nullopt);
    EXPECT_EQ(server.liveOwnerKey(), std::nullopt);
}

TEST_F(UDPServerOwner, IsTheNextThatSendsOnceTheSilenceWasNoticed) {
    expectDelivered(phone, touch);
    pass(6.0);
    EXPECT_EQ(server.ownerIP(), std::nullopt); // drops the owner
    expectDelivered(tablet, touch);
    EXPECT_EQ(server.liveOwnerKey(), tablet);
}

TEST_F(UDPServerOwner, GoesOnAfterALongSilenceIfNobodyElseCame) {
    expectDelivered(phone, touch);
    pass(3600.0);
    expectDelivered(phone, touch);
    EXPECT_EQ(server.liveOwnerKey(), phone);
}

TEST_F(UDPServerOwner, IsNotTheRefusedPeerWhoseDatagramsKeptComing) {
    expectDelivered(phone, touch);
    for (int second = 1; second < 6; ++second) {
        pass(1.0);
        expectRefused(tablet, touch);
    }
    pass(1.0);
    expectDelivered(tablet, touch);
}

// ---- Tokens

TEST_F(UDPServerOwner, MovesToTheDevicesNewAddressWithAHelloOfTheSameToken) {
    expectDelivered(phone, helloWith(5));
    expectDelivered(samePhone, helloWith(5));
    EXPECT_EQ(server.liveOwnerKey(), samePhone);
}

TEST_F(UDPServerOwner, ForgetsTheDevicesOldAddress) {
    expectDelivered(phone, helloWith(5));
    expectDelivered(samePhone, helloWith(5));
    server.send(touch, phone);
    EXPECT_THAT(takeSent(), IsEmpty());
    expectRefused(phone, touch); // its record is new and has no token
}

TEST_F(UDPServerOwner, DoesNotMoveToADeviceWithAnotherToken) {
    expectDelivered(phone, helloWith(5));
    expectRefused(samePhone, helloWith(6));
    EXPECT_EQ(server.liveOwnerKey(), phone);
}

TEST_F(UDPServerOwner, DoesNotMoveWhenOnlyOneSideHasAToken) {
    expectDelivered(phone, touch);
    expectRefused(samePhone, helloWith(5));
    expectDelivered(phone, helloWith(5));
    expectRefused(tablet, touch);
}

TEST_F(UDPServerOwner, DoesNotMoveOnATokenOfZero) {
    expectDelivered(phone, helloWithZeroToken);
    expectRefused(samePhone, helloWithZeroToken);
}

TEST_F(UDPServerOwner, DoesNotMoveOnAHelloTooShortForAToken) {
    Bytes nineBytes = helloWith(0);
    nineBytes.pop_back();
    expectDelivered(phone, nineBytes);
    expectRefused(samePhone, nineBytes);
}

TEST_F(UDPServerOwner, ReadsATokenFromALongerHello) {
    Bytes longer = helloWith(5);
    longer.push_back(0xEE);
    expectDelivered(phone, longer);
    expectDelivered(samePhone, helloWith(5));
}

TEST_F(UDPServerOwner, ReadsATokenFromAHelloOfThisVersionOnly) {
    Bytes otherVersion = helloWith(5);
    otherVersion[0] = 0x02;
    Bytes otherOpcode = helloWith(5);
    otherOpcode[1] = 0x01;
    expectDelivered(phone, helloWith(5));
    expectRefused(samePhone, otherVersion);
    expectRefused(samePhone, otherOpcode);
}

TEST_F(UDPServerOwner, ComparesAllBytesOfTheToken) {
    expectDelivered(phone, helloWith(5));
    for (std::size_t i = 2; i < 10; ++i) {
        Bytes other = helloWith(5);
        other[i] ^= 0x10;
        expectRefused(samePhone, other);
    }
}

TEST_F(UDPServerOwner, KeepsTheTokenOfAnEarlierHello) {
    expectDelivered(phone, helloWith(5));
    expectDelivered(phone, helloWithZeroToken);
    expectDelivered(phone, {0x01, 0x00});
    expectDelivered(phone, touch);
    expectDelivered(samePhone, helloWith(5));
}

TEST_F(UDPServerOwner, DoesNotKeepTheTokenOfAPeerThroughSixSecondsOfSilence) {
    expectDelivered(phone, helloWith(4));
    expectRefused(tablet, helloWith(5));
    pass(3.0);
    expectDelivered(phone, touch);
    pass(3.0);
    expectDelivered(phone, helloWith(5));
    expectRefused(tablet, touch); // although nothing was sent that would have removed its record
}

TEST_F(UDPServerOwner, TakesTheNewestTokenOfAPeer) {
    expectDelivered(phone, helloWith(5));
    expectDelivered(phone, helloWith(6));
    expectRefused(samePhone, helloWith(5));
    expectDelivered(samePhone, helloWith(6));
}

TEST_F(UDPServerOwner, MovesOnAnyDatagramOfAPeerWhoseTokenIsKnown) {
    expectDelivered(phone, touch);
    expectRefused(samePhone, helloWith(5));
    expectDelivered(phone, helloWith(5));
    expectDelivered(samePhone, touch);
    EXPECT_EQ(server.liveOwnerKey(), samePhone);
}

// ---- Taking over

TEST_F(UDPServerOwner, IsReplacedByATakeOverAtOnce) {
    expectDelivered(phone, touch);
    expectDelivered(tablet, takeOver);
    EXPECT_EQ(server.liveOwnerKey(), tablet);
    expectRefused(phone, touch);
}

TEST_F(UDPServerOwner, StaysKnownWhenReplacedByATakeOver) {
    expectDelivered(phone, touch);
    expectDelivered(tablet, takeOver);
    server.send(touch, phone);
    EXPECT_THAT(takeSent(), ElementsAre(Pair(phone, touch)));
    expectDelivered(phone, takeOver);
    EXPECT_EQ(server.liveOwnerKey(), phone);
}

TEST_F(UDPServerOwner, IsReplacedByALongerTakeOverToo) {
    expectDelivered(phone, touch);
    expectDelivered(tablet, {0x01, 0x25, 0x00});
}

TEST_F(UDPServerOwner, IsNotReplacedByWhatOnlyResemblesATakeOver) {
    expectDelivered(phone, touch);
    expectRefused(tablet, {0x01});
    expectRefused(tablet, {0x25});
    expectRefused(tablet, {0x02, 0x25});
    expectRefused(tablet, {0x01, 0x24});
    server.handleDatagram(ByteView(takeOver).first(1), peerAt(tablet)); // what lies behind it in the buffer is old
    EXPECT_EQ(server.liveOwnerKey(), phone);
}

TEST_F(UDPServerOwner, HasAnOldAddressForgottenWhenTheSameDeviceTakesOver) {
    expectDelivered(phone, helloWith(5));
    expectDelivered(tablet, takeOver);
    expectRefused(samePhone, helloWith(5)); // the tablet is in control, and has another token
    expectDelivered(samePhone, takeOver);
    EXPECT_EQ(server.liveOwnerKey(), samePhone);
}

// ---- Other receivers

class UDPServerOtherReceiver : public UDPServerOwner, public testing::WithParamInterface<int> {
protected:
    const Bytes message{0x01, static_cast<std::uint8_t>(GetParam()), 0x00};
};

INSTANTIATE_TEST_SUITE_P(Types, UDPServerOtherReceiver, testing::Values(0x10, 0x15, 0x1F, 0x7D, 0x7F));

TEST_P(UDPServerOtherReceiver, DoesNotBecomeTheOwner) {
    expectIgnored(tablet, message);
    EXPECT_EQ(server.liveOwnerKey(), std::nullopt);
    EXPECT_THAT(server.connectedIPs(), IsEmpty());
}

TEST_P(UDPServerOtherReceiver, IsNotRefused) {
    expectDelivered(phone, touch);
    expectIgnored(tablet, message);
    expectIgnored(tablet, {0x01, message[1]});
    server.send(touch, tablet);
    EXPECT_THAT(takeSent(), IsEmpty()); // it is not in the table
}

TEST_P(UDPServerOtherReceiver, IsNoSignOfLifeOfTheOwner) {
    expectDelivered(phone, touch);
    pass(5.999);
    expectIgnored(phone, message);
    pass(0.001);
    EXPECT_EQ(server.liveOwnerKey(), std::nullopt);
}

TEST_F(UDPServerOwner, IsNeverTheServerItself) {
    sockets.ownAddress = self;
    expectIgnored(self, touch);
    expectIgnored(self, helloWith(5));
    EXPECT_EQ(server.liveOwnerKey(), std::nullopt);
    EXPECT_THAT(server.connectedIPs(), IsEmpty());

    expectDelivered(phone, touch);
    expectIgnored(self, {0xFF}); // would be answered for ever
    expectIgnored(self, takeOver);
    EXPECT_EQ(server.liveOwnerKey(), phone);
}

TEST_F(UDPServerOwner, MayHaveTheServersPortOnAnotherComputer) {
    sockets.ownAddress = self;
    expectDelivered("::ffff:192.168.1.20:52700", touch);
}

// ---- Without a callback

TEST_F(UDPServerOwner, IsDecidedEvenIfNobodyListens) {
    server.onDatagram = nullptr;
    from(phone, touch);
    EXPECT_EQ(server.liveOwnerKey(), phone);
}

} // namespace
} // namespace lumbrine
