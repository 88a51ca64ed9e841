#include "platform/virtual/toy_secrets.h"
#include "seal/session_key.h"

#include <gtest/gtest.h>

#include <set>

namespace lumbrine::seal {
namespace {

constexpr std::uint64_t sampleToken = 0x5B1E900DCAFE0007;
const Half client{1, 2, 3, 4, 5, 6, 7, 8};
const Half receiver{9, 10, 11, 12, 13, 14, 15, 16};

TEST(SessionKey, IsAnotherOneForEachPartOfTheSessionsName) {
    ToySecrets secrets;
    const auto pairing = hashOf(secrets, *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC"));
    std::set<Hash> hashes;
    for (const SessionName& name :
         {SessionName{sampleToken, client, receiver}, SessionName{sampleToken + 1, client, receiver},
          SessionName{sampleToken, receiver, receiver}, SessionName{sampleToken, client, client}})
        hashes.insert(sessionHash(secrets, *pairing, name)->of({}, {}));
    EXPECT_EQ(hashes.size(), 4U);
}

TEST(SessionKey, IsTheSameAtBothEnds) {
    ToySecrets one(1), other(2);
    const PairingKey key = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");
    const auto first = hashOf(one, key);
    const auto second = hashOf(other, key);
    EXPECT_EQ(numberOf(*first), numberOf(*second));
    const SessionName name{sampleToken, client, receiver};
    EXPECT_EQ(sessionHash(one, *first, name)->of({}, {}), sessionHash(other, *second, name)->of({}, {}));
}

TEST(OpeningMessage, IsAHelloWithMoreBehindIt) {
    const auto message = openingMessage(sampleToken, client);
    EXPECT_EQ(Bytes(message.begin(), message.end()), (Bytes{
                                                         0x01, 0x00,                                     // Hello
                                                         0x5B, 0x1E, 0x90, 0x0D, 0xCA, 0xFE, 0x00, 0x07, // token
                                                         1, 2, 3, 4, 5, 6, 7, 8,                         // half
                                                     }));
    EXPECT_EQ(tokenOfHello(message), sampleToken);
    EXPECT_EQ(clientHalfOf(message), client);
}

TEST(OpeningMessage, IsNoneInAnyOtherLength) {
    const auto message = openingMessage(sampleToken, client);
    for (std::size_t size = 0; size < message.size(); ++size)
        EXPECT_FALSE(clientHalfOf(ByteView(message).first(size))) << size;
    Bytes longer(message.begin(), message.end());
    longer.push_back(0);
    EXPECT_FALSE(clientHalfOf(longer));
}

TEST(SessionMessage, HasBothHalves) {
    const auto message = sessionMessage(client, receiver);
    EXPECT_EQ(Bytes(message.begin(), message.end()),
              (Bytes{0x01, 0x7E, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
    const auto halves = halvesOf(message);
    ASSERT_TRUE(halves);
    EXPECT_EQ(halves->client, client);
    EXPECT_EQ(halves->receiver, receiver);
    for (std::size_t size = 0; size < message.size(); ++size)
        EXPECT_FALSE(halvesOf(ByteView(message).first(size))) << size;
}

TEST(TokenOfHello, IsAbsentWithoutOne) {
    EXPECT_FALSE(tokenOfHello(Bytes{0x01, 0x00}));
    EXPECT_FALSE(tokenOfHello(openingMessage(0, client)));
    EXPECT_FALSE(tokenOfHello(sessionMessage(client, receiver)));
}

} // namespace
} // namespace lumbrine::seal
