#include "platform/virtual/toy_secrets.h"
#include "seal/client_seal.h"

#include <gtest/gtest.h>

namespace lumbrine::seal {
namespace {

constexpr std::uint64_t token = 7;
const Bytes hello{0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, 7};
const Bytes move{0x01, 0x01, 0x03, 0x3F, 0xFF};
const Bytes pong{0x01, 0x7F};
const Half receiverHalf{1, 1, 2, 3, 5, 8, 13, 21};

Bytes copyOf(ByteView bytes) {
    return {bytes.begin(), bytes.end()};
}

class ClientSealTest : public testing::Test {
protected:
    Bytes sends(const Bytes& message) { return copyOf(client.outgoing(message, now)); }

    // What the receiver answers to an opening, and the client to that.
    Bytes answerTo(const Bytes& opening) {
        const auto parts = splitTrailer(opening);
        const auto half = parts ? clientHalfOf(parts->message) : std::nullopt;
        if (!half) return {};
        sessionKey = sessionHash(secrets, *pairing, {.token = token, .client = *half, .receiver = receiverHalf});
        count = 0;
        return sealed(copyOf(sessionMessage(*half, receiverHalf)), *pairing, 0);
    }
    Bytes sealed(const Bytes& message, KeyedHash& key, std::uint32_t number) {
        SealedDatagram datagram;
        datagram.make(message, key, numberOf(*pairing), Direction::toClient, token, {.count = number});
        return copyOf(datagram.bytes());
    }
    Bytes fromReceiver(const Bytes& message) { return sealed(message, *sessionKey, ++count); }
    Bytes received(const Bytes& datagram) { return copyOf(client.incoming(datagram, now).message); }

    Bytes openSession() { return copyOf(client.incoming(answerTo(sends(hello)), now).reply); }

    const PairingKey key = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");
    ToySecrets secrets;
    TimePoint now{seconds(100.0)};
    ClientSeal client{secrets, key};
    std::unique_ptr<KeyedHash> pairing = hashOf(secrets, key);
    std::unique_ptr<KeyedHash> sessionKey;
    std::uint32_t count = 0;
};

TEST_F(ClientSealTest, SealsHellosAloneUntilTheReceiverAnswers) {
    EXPECT_EQ(sends(move), move);
    const Bytes datagram = sends(hello);
    const auto opening = splitTrailer(datagram);
    ASSERT_TRUE(opening);
    EXPECT_EQ(copyOf(opening->message.first(hello.size())), hello) << "for a receiver without seals";
    EXPECT_EQ(opening->trailer.sequence.count, 0U);
    EXPECT_TRUE(isRight(*opening, *pairing, Direction::toReceiver, token));
    EXPECT_EQ(sends(move), move);
    EXPECT_EQ(received(pong), pong);
}

TEST_F(ClientSealTest, DoesNotSealAHelloWithoutAToken) {
    EXPECT_EQ(sends({0x01, 0x00}), (Bytes{0x01, 0x00}));
}

TEST_F(ClientSealTest, AnswersTheReceiversHalfWithASealedHello) {
    const Bytes proof = openSession();
    const auto parts = splitTrailer(proof);
    ASSERT_TRUE(parts);
    EXPECT_EQ(copyOf(parts->message), hello);
    EXPECT_EQ(parts->trailer.sequence.count, 1U);
    EXPECT_TRUE(isRight(*parts, *sessionKey, Direction::toReceiver, token));
    EXPECT_TRUE(client.inSession());
}

TEST_F(ClientSealTest, SealsEverythingInASession) {
    openSession();
    for (std::uint32_t expected = 2; expected < 5; ++expected) {
        const Bytes datagram = sends(expected % 2 == 0 ? move : hello);
        const auto parts = splitTrailer(datagram);
        ASSERT_TRUE(parts);
        EXPECT_EQ(parts->trailer.sequence.count, expected);
        EXPECT_TRUE(isRight(*parts, *sessionKey, Direction::toReceiver, token));
    }
}

TEST_F(ClientSealTest, TakesInASessionOnlyWhatIsSealed) {
    openSession();
    EXPECT_EQ(received(fromReceiver(pong)), pong);
    EXPECT_EQ(received(pong), Bytes());
    Bytes changed = fromReceiver(pong);
    changed[1] = 0x7D;
    EXPECT_EQ(received(changed), Bytes());
    EXPECT_EQ(received(sends(pong)), Bytes()) << "its own, sent back";
}

TEST_F(ClientSealTest, TakesNothingUnderAnotherKeysNumber) {
    openSession();
    Bytes datagram = fromReceiver(pong);
    datagram[datagram.size() - 13] ^= 1;
    EXPECT_EQ(received(datagram), Bytes());
}

TEST_F(ClientSealTest, TakesNothingTwice) {
    openSession();
    const Bytes datagram = fromReceiver(pong);
    EXPECT_EQ(received(datagram), pong);
    EXPECT_EQ(received(datagram), Bytes());
    fromReceiver(pong); // lost
    EXPECT_EQ(received(fromReceiver(pong)), pong);
    EXPECT_EQ(client.received(), 2U);
    EXPECT_EQ(client.lost(), 1U);
}

TEST_F(ClientSealTest, IsNotMovedByTheAnswerToAnotherOpening) {
    const Bytes answer = answerTo(sends(hello));
    sends(hello); // another opening
    EXPECT_EQ(copyOf(client.incoming(answer, now).reply), Bytes());
    EXPECT_FALSE(client.inSession());
    const Bytes second = answerTo(sends(hello));
    EXPECT_NE(copyOf(client.incoming(second, now).reply), Bytes());
    EXPECT_EQ(copyOf(client.incoming(second, now).reply), Bytes()) << "once";
}

TEST_F(ClientSealTest, OpensASessionAnewWhenTheReceiverIsSilent) {
    openSession();
    now += seconds(1.9);
    EXPECT_NE(splitTrailer(sends(hello))->trailer.sequence.count, 0U);
    received(fromReceiver(pong));
    now += seconds(2.0);
    const Bytes opening = sends(hello);
    EXPECT_EQ(splitTrailer(opening)->trailer.sequence.count, 0U);
    client.incoming(answerTo(opening), now);
    EXPECT_EQ(received(fromReceiver(pong)), pong) << "of the new session, from count 1 on";
}

TEST_F(ClientSealTest, KeepsItsSessionWhileItAsksForAnother) {
    openSession();
    now += seconds(5);
    sends(hello);
    EXPECT_EQ(received(fromReceiver(pong)), pong);
    EXPECT_TRUE(isRight(*splitTrailer(sends(move)), *sessionKey, Direction::toReceiver, token));
}

TEST_F(ClientSealTest, OpensASessionAnewLongBeforeTheCountsRunOut) {
    openSession();
    count = ClientSeal::renewal - 2;
    received(fromReceiver(pong));
    EXPECT_NE(splitTrailer(sends(hello))->trailer.sequence.count, 0U);
    received(fromReceiver(pong));
    EXPECT_EQ(splitTrailer(sends(hello))->trailer.sequence.count, 0U);
}

} // namespace
} // namespace lumbrine::seal
