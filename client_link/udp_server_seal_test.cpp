// What the server does with sealed datagrams, and what only sealed ones may do.
#include "client_link/testing/datagrams.h"
#include "client_link/testing/sealing_client.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

const Bytes mutePress{0x01, 0x04, 0x00};
const Bytes release{0x01, 0x03, 0x00};
const Bytes groupMute{0x01, 0x21, 0x01, 0x01, 0x00, 0x05};
const Bytes lifeSign{0x01, 0x07, 0x00, 0x00};

Bytes moveTo(std::uint8_t value, std::uint8_t strip = 0) {
    return {0x01, 0x01, strip, value, 0x00};
}

class UDPServerSeal : public testing::Test, public ServedPeers {
protected:
    UDPServerSeal() {
        server.useSeals(secrets);
        server.setKeys({studioKey});
    }

    // With an open session, in control.
    void begin(SealingClient& client) {
        client.open();
        EXPECT_TRUE(client.inSession());
        EXPECT_THAT(takeDelivered(), ElementsAre(Pair(client.address, client.hello)));
    }

    void expectDelivered(const std::string& at, const Bytes& datagram, const Bytes& message) {
        from(at, datagram);
        EXPECT_THAT(takeDelivered(), ElementsAre(Pair(at, message)));
    }
    void expectNothing(const std::string& at, const Bytes& datagram) {
        from(at, datagram);
        EXPECT_THAT(takeDelivered(), IsEmpty());
        EXPECT_THAT(takeSent(), IsEmpty());
    }
    // Answered with "busy", or with nothing.
    void expectRefused(const std::string& at, const Bytes& datagram) {
        from(at, datagram);
        EXPECT_THAT(takeDelivered(), IsEmpty());
        takeSent();
    }

    const std::string forger = "::ffff:192.168.1.66:40000";
    ToySecrets secrets{99};
    SealingClient phone{*this, "::ffff:192.168.1.20:50000", 7};
    SealingClient tablet{*this, "::ffff:192.168.1.30:50000", 8};
};

TEST_F(UDPServerSeal, OpensASessionAndDeliversMessagesWithoutTheirTrailers) {
    begin(phone);
    expectDelivered(phone.address, phone.sealed(touch), touch);
    expectDelivered(phone.address, phone.sealed(groupMute), groupMute);
}

TEST_F(UDPServerSeal, SealsWhatGoesToAClientThatSeals) {
    begin(phone);
    server.broadcast(news);
    server.send(news, phone.address);
    const auto sent = takeSent();
    ASSERT_THAT(sent, SizeIs(2));
    for (const auto& [to, datagram] : sent)
        EXPECT_EQ(datagram.size(), news.size() + seal::trailerSize);
    sockets.sent = sent;
    EXPECT_THAT(phone.receiveAll(), ElementsAre(news, news));
}

TEST_F(UDPServerSeal, ServesAClientWithoutAKeyAsEver) {
    expectDelivered(forger, touch, touch);
    server.broadcast(news);
    EXPECT_THAT(takeSent(), ElementsAre(Pair(forger, news)));
}

TEST_F(UDPServerSeal, TakesTheHelloOfAKeyThatItDoesNotKnowAsAHello) {
    SealingClient stranger(*this, forger, 9, otherKey);
    const Bytes opening = stranger.sealed(stranger.hello);
    expectDelivered(forger, opening, opening);
    EXPECT_EQ(server.liveOwnerKey(), forger);
}

TEST_F(UDPServerSeal, TakesBytesBehindAMessageForNothingElse) {
    Bytes longer = touch;
    append(longer, Bytes{0xFF, 0x5E, 0xA1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13});
    expectDelivered(forger, longer, longer);
}

TEST_F(UDPServerSeal, DeliversNothingTwice) {
    begin(phone);
    const Bytes press = phone.sealed(mutePress);
    expectDelivered(phone.address, press, mutePress);
    for (const std::string& at : {phone.address, forger})
        expectRefused(at, press);
    EXPECT_EQ(server.liveOwnerKey(), phone.address);
}

TEST_F(UDPServerSeal, DropsWhatIsNotSealedFromAClientThatSeals) {
    begin(phone);
    expectNothing(phone.address, mutePress);
    expectNothing(phone.address, takeOver);
    Bytes changed = phone.sealed(mutePress);
    changed[2] = 0x05;
    expectNothing(phone.address, changed);
    pass(6.0);
    expectDelivered(phone.address, mutePress, mutePress); // the client that sealed has gone
}

TEST_F(UDPServerSeal, DropsADatagramInWhichAnyByteHasChanged) {
    begin(phone);
    const Bytes original = phone.sealed(mutePress);
    for (std::size_t byte = 0; byte < original.size(); ++byte) {
        Bytes changed = original;
        changed[byte] ^= 0x10;
        expectNothing(phone.address, changed);
    }
    expectDelivered(phone.address, original, mutePress);
}

TEST_F(UDPServerSeal, HandsNothingOverToTheOwnersTokenWithoutASeal) {
    begin(phone);
    from(forger, phone.hello);
    EXPECT_THAT(takeSent(), ElementsAre(Pair(forger, busy)));
    EXPECT_EQ(server.liveOwnerKey(), phone.address);
}

TEST_F(UDPServerSeal, FollowsAClientToAnotherAddress) {
    begin(phone);
    const auto before = server.ownership();
    const std::string old = std::exchange(phone.address, "::ffff:10.0.0.5:50000");
    expectDelivered(phone.address, phone.sealed(phone.hello), phone.hello);
    expectDelivered(phone.address, phone.sealed(touch), touch);
    EXPECT_EQ(server.ownership(), before);
    server.broadcast(news);
    EXPECT_THAT(phone.receiveAll(), ElementsAre(news));
}

TEST_F(UDPServerSeal, DoesNotGoBackToTheAddressOfAnOvertakenHello) {
    begin(phone);
    const std::string old = phone.address;
    const Bytes early = phone.sealed(phone.hello);
    phone.address = "::ffff:10.0.0.5:50000";
    const Bytes late = phone.sealed(phone.hello);
    expectDelivered(phone.address, late, phone.hello);
    expectNothing(old, early);
    expectNothing(old, late);
    EXPECT_EQ(server.liveOwnerKey(), phone.address);
}

TEST_F(UDPServerSeal, DropsAFaderMoveThatANewerOneHasOvertaken) {
    begin(phone);
    const Bytes first = phone.sealed(moveTo(1));
    const Bytes other = phone.sealed(moveTo(2, 1));
    const Bytes second = phone.sealed(moveTo(3));
    expectDelivered(phone.address, second, moveTo(3));
    expectNothing(phone.address, first);
    expectDelivered(phone.address, other, moveTo(2, 1));
}

TEST_F(UDPServerSeal, RemembersNoMovesOfStripsThatThereAreNot) {
    begin(phone);
    const Bytes first = phone.sealed(moveTo(1, 16));
    const Bytes second = phone.sealed(moveTo(2, 16));
    expectDelivered(phone.address, second, moveTo(2, 16));
    expectDelivered(phone.address, first, moveTo(1, 16));
}

TEST_F(UDPServerSeal, DropsATouchThatItsReleaseHasOvertaken) {
    begin(phone);
    const Bytes down = phone.sealed(touch);
    const Bytes up = phone.sealed(release);
    const Bytes again = phone.sealed(release);
    expectDelivered(phone.address, again, release);
    expectNothing(phone.address, up);
    expectNothing(phone.address, down);
}

TEST_F(UDPServerSeal, DropsPressesTakeOversAndGroupsThatComeTooLate) {
    begin(phone);
    for (const Bytes& message : {mutePress, takeOver, groupMute}) {
        const Bytes inTime = phone.sealed(message);
        const Bytes late = phone.sealed(message);
        pass(2.0);
        expectDelivered(phone.address, inTime, message);
        pass(0.5);
        expectNothing(phone.address, late);
    }
}

TEST_F(UDPServerSeal, DeliversTouchesMovesAndReleasesUpToFiveSecondsLate) {
    begin(phone);
    for (const Bytes& message : {touch, moveTo(4), release}) {
        const Bytes late = phone.sealed(message);
        pass(4.9);
        expectDelivered(phone.address, late, message);
    }
}

TEST_F(UDPServerSeal, KnowsTheSixtyThreeDatagramsBeforeTheNewest) {
    begin(phone);
    const Bytes tooOld = phone.sealed(mutePress);
    const Bytes oldest = phone.sealed(mutePress);
    for (int i = 0; i < 62; ++i)
        phone.sealed(lifeSign);
    expectDelivered(phone.address, phone.sealed(lifeSign), lifeSign);
    expectNothing(phone.address, tooOld);
    expectDelivered(phone.address, oldest, mutePress);
    expectNothing(phone.address, oldest);
}

TEST_F(UDPServerSeal, TakesPressesAgainWithTheFirstHelloAfterASleepOfItsOwn) {
    begin(phone);
    const Bytes before = phone.sealed(mutePress);
    const Bytes hello = phone.sealed(phone.hello);
    const Bytes after = phone.sealed(mutePress);
    pass(3600); // for the receiver alone
    expectNothing(phone.address, before);
    expectDelivered(phone.address, hello, phone.hello);
    expectDelivered(phone.address, after, mutePress);
}

TEST_F(UDPServerSeal, BelievesTheTimeOfAHello) {
    begin(phone);
    const Bytes hello = phone.sealed(phone.hello); // the client's clock stands still from here on
    const Bytes press = phone.sealed(mutePress);
    pass(5);
    expectDelivered(phone.address, hello, phone.hello);
    expectDelivered(phone.address, press, mutePress);
}

TEST_F(UDPServerSeal, LetsAClientBeginAgainAfterItsRestart) {
    begin(phone);
    for (int i = 0; i < 100; ++i)
        phone.sends(touch);
    takeDelivered();
    const auto before = server.ownership();
    SealingClient restarted(*this, "::ffff:192.168.1.20:50001", 7);
    begin(restarted);
    EXPECT_EQ(server.ownership(), before) << "the same device";
    expectDelivered(restarted.address, restarted.sealed(touch), touch);
    expectRefused(phone.address, phone.sealed(touch));
}

TEST_F(UDPServerSeal, KeepsASessionWhoseOpeningsArePlayedAgain) {
    const Bytes opening = phone.sealed(phone.hello);
    from(phone.address, opening);
    phone.receiveAll();
    takeDelivered();
    for (const std::string& at : {phone.address, forger})
        expectNothing(at, opening);
    expectDelivered(phone.address, phone.sealed(touch), touch);
}

TEST_F(UDPServerSeal, CountsWhatWasLost) {
    EXPECT_FALSE(server.ownersLoss());
    begin(phone);
    phone.sealed(touch);
    phone.sends(touch);
    ASSERT_TRUE(server.ownersLoss());
    EXPECT_EQ(server.ownersLoss()->received, 2U);
    EXPECT_EQ(server.ownersLoss()->lost, 1U);
}

TEST_F(UDPServerSeal, ServesClientsOfTwoKeys) {
    server.setKeys({studioKey, otherKey});
    SealingClient guest(*this, tablet.address, 8, otherKey);
    begin(phone);
    guest.open();
    EXPECT_TRUE(guest.inSession());
    EXPECT_EQ(server.liveOwnerKey(), phone.address);
    guest.sends(takeOver);
    EXPECT_EQ(server.liveOwnerKey(), guest.address);
}

TEST_F(UDPServerSeal, HandsNothingOverToTheOwnersTokenSealedWithAnotherKey) {
    server.setKeys({studioKey, otherKey});
    begin(phone);
    SealingClient guest(*this, tablet.address, 7, otherKey);
    guest.open();
    EXPECT_EQ(server.liveOwnerKey(), phone.address);
}

class PairedOnly : public UDPServerSeal {
protected:
    PairedOnly() { server.letOnlyPairedIn(true); }
};

TEST_F(PairedOnly, AnswersNobodyWithoutAKey) {
    SealingClient stranger(*this, forger, 9, otherKey);
    for (const Bytes& datagram : {touch, takeOver, phone.hello, stranger.sealed(stranger.hello), Bytes{0xFF}})
        expectNothing(forger, datagram);
    EXPECT_EQ(server.liveOwnerKey(), std::nullopt);
    EXPECT_THAT(server.connectedIPs(), IsEmpty());
    EXPECT_EQ(server.strangers(), 1U);
}

TEST_F(PairedOnly, CountsTheHostsThatItDidNotLetIn) {
    int told = 0;
    server.onStranger = [&] { ++told; };
    for (int host = 0; host < 300; ++host)
        expectNothing("10.0.0." + std::to_string(host) + ":5000", touch);
    EXPECT_EQ(server.strangers(), UDPServer::maxStrangers);
    EXPECT_EQ(told, static_cast<int>(UDPServer::maxStrangers));
}

TEST_F(PairedOnly, ServesClientsWithAKey) {
    begin(phone);
    expectDelivered(phone.address, phone.sealed(touch), touch);
    tablet.open();
    tablet.sends(touch);
    EXPECT_THAT(tablet.receiveAll(), ElementsAre(busy));
    EXPECT_EQ(server.strangers(), 0U);
}

TEST_F(PairedOnly, TakesNothingFromARecordingOfAnotherSession) {
    begin(phone);
    const std::vector<Bytes> recording{phone.sealed(phone.hello), phone.sealed(mutePress), phone.sealed(takeOver)};
    pass(3);
    phone.open(); // a new session: nothing sealed has come for a while
    takeDelivered();
    for (const Bytes& datagram : recording)
        for (const std::string& at : {phone.address, forger})
            expectNothing(at, datagram);
    EXPECT_EQ(server.liveOwnerKey(), phone.address);
}

TEST_F(PairedOnly, TakesNothingFromARecordingAfterARestart) {
    begin(phone);
    const std::vector<Bytes> recording{phone.sealed(phone.hello), phone.sealed(mutePress)};
    SealedSessions restarted(secrets);
    restarted.setKeys({studioKey});
    restarted.letOnlyPairedIn(true);
    for (const Bytes& datagram : recording)
        EXPECT_EQ(restarted.judge(datagram, phone.address, runtime.time).verdict, SealedSessions::Verdict::stranger);
}

TEST_F(PairedOnly, TakesNoFaderFromARecordingOfWhatTheNetworkLost) {
    begin(phone);
    const Bytes lost = phone.sealed(moveTo(4));
    pass(5.5);
    expectDelivered(phone.address, phone.sealed(lifeSign), lifeSign);
    expectNothing(phone.address, lost);
    pass(60);
    for (const std::string& at : {phone.address, forger})
        expectNothing(at, lost);
    EXPECT_EQ(server.liveOwnerKey(), std::nullopt);
}

TEST_F(PairedOnly, EndsWithAKeyThatIsTakenAwayInMidDrag) {
    begin(phone);
    expectDelivered(phone.address, phone.sealed(touch), touch);
    server.setKeys({otherKey});
    expectNothing(phone.address, phone.sealed(moveTo(5)));
    server.broadcast(news);
    server.send(news, phone.address);
    EXPECT_THAT(takeSent(), IsEmpty());
    pass(6);
    EXPECT_EQ(server.liveOwnerKey(), std::nullopt);
}

TEST_F(PairedOnly, KeepsTheSessionsOfTheOtherKeysWhenOneIsTakenAway) {
    server.setKeys({studioKey, otherKey});
    SealingClient guest(*this, tablet.address, 8, otherKey);
    begin(phone);
    guest.open();
    server.setKeys({studioKey});
    expectDelivered(phone.address, phone.sealed(touch), touch);
    expectDelivered(phone.address, phone.sealed(moveTo(5)), moveTo(5));
    expectNothing(guest.address, guest.sealed(takeOver));
    EXPECT_EQ(server.liveOwnerKey(), phone.address);
}

TEST_F(PairedOnly, LeavesNothingToTheOwnerThatDoesNotSeal) {
    server.letOnlyPairedIn(false);
    expectDelivered(forger, touch, touch);
    server.letOnlyPairedIn(true);
    expectNothing(forger, moveTo(1));
    server.broadcast(news);
    EXPECT_THAT(takeSent(), IsEmpty());
}

} // namespace
} // namespace lumbrine
