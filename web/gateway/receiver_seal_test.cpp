#include "platform/virtual/toy_secrets.h"
#include "seal/session_key.h"
#include "web/gateway/receiver_seal.h"

#include <gtest/gtest.h>

namespace lumbrine::web {
namespace {

constexpr std::uint64_t token = 7;
const Bytes hello{0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, 7};
const Bytes move{0x01, 0x01, 0x03, 0x3F, 0xFF};
const Bytes pong{0x01, 0x7F};
const PairingKey first = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");
const PairingKey second = *PairingKey::parse("014D2PF2DBSQQG28T5CY4TQKFF");

Bytes copyOf(ByteView bytes) {
    return {bytes.begin(), bytes.end()};
}

class ReceiverSealTest : public testing::Test {
protected:
    Bytes sends(const Bytes& message) { return copyOf(seal.outgoing(message, now)); }

    std::optional<Bytes> pageHears(const Bytes& datagram) {
        const auto message = seal.incoming(datagram, now).message;
        if (!message) return std::nullopt;
        return copyOf(*message);
    }

    bool isSealed(const Bytes& datagram) const { return seal::splitTrailer(datagram).has_value(); }

    // The receiver answers the page's hello with its half of the session's key.
    void openSessionWith(const PairingKey& key) {
        const auto pairing = seal::hashOf(secrets, key);
        const Bytes opening = sends(hello);
        const auto half = seal::clientHalfOf(seal::splitTrailer(opening)->message);
        seal::SealedDatagram answer;
        answer.make(seal::sessionMessage(*half, {}), *pairing, seal::numberOf(*pairing), seal::Direction::toClient,
                    token, {});
        const auto heard = seal.incoming(answer.bytes(), now);
        EXPECT_FALSE(heard.message) << "the session is none of the page's business";
        EXPECT_TRUE(isSealed(copyOf(heard.reply)));
    }

    ToySecrets secrets;
    TimePoint now{seconds(100.0)};
    ReceiverSeal seal{secrets};
};

TEST_F(ReceiverSealTest, ChangesNothingWithoutAKey) {
    for (const Bytes& message : {hello, move, Bytes{}}) {
        EXPECT_EQ(sends(message), message);
        EXPECT_EQ(pageHears(message), message);
    }
}

TEST_F(ReceiverSealTest, SealsForThePageOnceTheSessionIsOpen) {
    seal.use(first);
    openSessionWith(first);
    EXPECT_TRUE(isSealed(sends(move)));
    EXPECT_EQ(pageHears(pong), std::nullopt) << "it is not sealed";
}

TEST_F(ReceiverSealTest, CarriesUnsealedMessagesWhileTheReceiverDoesNotAnswerTheSeal) {
    seal.use(first);
    EXPECT_TRUE(isSealed(sends(hello)));
    EXPECT_EQ(sends(move), move);
    EXPECT_EQ(pageHears(pong), pong);
}

TEST_F(ReceiverSealTest, KeepsTheSessionWhileTheKeyIsTheSame) {
    seal.use(first);
    openSessionWith(first);
    seal.use(first);
    EXPECT_TRUE(isSealed(sends(move)));
}

TEST_F(ReceiverSealTest, OpensAnotherSessionWithAnotherKey) {
    seal.use(first);
    openSessionWith(first);
    seal.use(second);
    EXPECT_EQ(sends(move), move);
    openSessionWith(second);
    EXPECT_TRUE(isSealed(sends(move)));
}

TEST_F(ReceiverSealTest, IsOverWhenTheKeyIsForgotten) {
    seal.use(first);
    openSessionWith(first);
    seal.use(std::nullopt);
    EXPECT_EQ(sends(hello), hello);
    EXPECT_EQ(pageHears(pong), pong);
}

} // namespace
} // namespace lumbrine::web
