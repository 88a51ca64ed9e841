// The sealed examples of docs/protocol.md, against OpenSSL's hash. They come from Python's: scripts/seal_vectors.py
// prints them.
#include "base/bytes.h"
#include "platform/linux/openssl_secrets.h"
#include "seal/seal_trailer.h"
#include "seal/session_key.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace lumbrine::seal {
namespace {

constexpr std::uint64_t token = 0x5B1E900DCAFE0007;
const Half clientHalf{0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};
const Half receiverHalf{0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF, 0x00};

// The examples by their names. Two blanks end the bytes of a line.
std::map<std::string, Bytes> examples() {
    std::ifstream document(LUMBRINE_SOURCE_DIR "/docs/protocol.md");
    const std::string fence = "```sealed-by ";
    std::map<std::string, Bytes> found;
    std::string name;
    for (std::string line; std::getline(document, line);) {
        if (line.starts_with("```")) {
            name = line.starts_with(fence) ? line.substr(fence.size()) : "";
        } else if (!name.empty()) {
            std::istringstream tokens(line.substr(0, line.find("  ")));
            for (std::string byte; tokens >> byte;)
                found[name].push_back(static_cast<std::uint8_t>(std::stoul(byte, nullptr, 16)));
        }
    }
    return found;
}

template <typename Range>
Bytes bytesOf(const Range& range) {
    return {range.begin(), range.end()};
}

class SealVectors : public testing::Test {
protected:
    Bytes sealed(ByteView message, KeyedHash& hash, Direction direction, Sequence sequence) {
        SealedDatagram datagram;
        datagram.make(message, hash, numberOf(*pairing), direction, token, sequence);
        return bytesOf(datagram.bytes());
    }

    const PairingKey key = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");
    OpenSSLSecrets secrets;
    std::unique_ptr<KeyedHash> pairing = hashOf(secrets, key);
    std::unique_ptr<KeyedHash> session =
        sessionHash(secrets, *pairing, {.token = token, .client = clientHalf, .receiver = receiverHalf});
    std::map<std::string, Bytes> shown = examples();
};

TEST_F(SealVectors, AreThoseOfTheDocument) {
    const auto opening = openingMessage(token, clientHalf);
    const std::map<std::string, Bytes> expected{
        {"key", bytesOf(key.bits())},
        {"number", {numberOf(*pairing)}},
        {"opening", sealed(opening, *pairing, Direction::toReceiver, {.count = 0, .time = 77})},
        {"session",
         sealed(sessionMessage(clientHalf, receiverHalf), *pairing, Direction::toClient, {.count = 0, .time = 9})},
        {"hello",
         sealed(ByteView(opening).first(helloSize), *session, Direction::toReceiver, {.count = 1, .time = 78})},
        {"pong", sealed(Bytes{0x01, 0x7F}, *session, Direction::toClient, {.count = 1, .time = 10})},
        {"move",
         sealed(Bytes{0x01, 0x01, 0x03, 0x3F, 0xFF}, *session, Direction::toReceiver, {.count = 2, .time = 95})},
    };
    EXPECT_EQ(shown, expected);
}

TEST_F(SealVectors, AreRightInTheirPlaceAlone) {
    for (const std::string name : {"opening", "session", "hello", "pong", "move"}) {
        const auto parts = splitTrailer(shown[name]);
        ASSERT_TRUE(parts) << name;
        for (const Direction direction : {Direction::toReceiver, Direction::toClient}) {
            const bool toClient = name == "session" || name == "pong";
            KeyedHash& hash = parts->trailer.sequence.count == 0 ? *pairing : *session;
            KeyedHash& other = parts->trailer.sequence.count == 0 ? *session : *pairing;
            EXPECT_EQ(isRight(*parts, hash, direction, token), (direction == Direction::toClient) == toClient) << name;
            EXPECT_FALSE(isRight(*parts, other, direction, token)) << name;
        }
    }
}

// RFC 4231, test case 2.
TEST_F(SealVectors, UseTheHashOfTheStandard) {
    const std::string text = "what do ya want for nothing?";
    const auto hash = secrets.keyedHash(bytesOf(std::string("Jefe")));
    const Bytes expected{0x5B, 0xDC, 0xC1, 0x46, 0xBF, 0x60, 0x75, 0x4E, 0x6A, 0x04, 0x24,
                         0x26, 0x08, 0x95, 0x75, 0xC7, 0x5A, 0x00, 0x3F, 0x08, 0x9D, 0x27,
                         0x39, 0x83, 0x9D, 0xEC, 0x58, 0xB9, 0x64, 0xEC, 0x38, 0x43};
    for (std::size_t first = 0; first <= text.size(); ++first)
        EXPECT_EQ(bytesOf(hash->of(bytesOf(text.substr(0, first)), bytesOf(text.substr(first)))), expected);
}

TEST(OpenSSLSecrets, AreNotTheSameTwice) {
    OpenSSLSecrets secrets;
    Bytes first(300), second(300);
    secrets.fillRandom(first);
    secrets.fillRandom(second);
    EXPECT_NE(first, second);
    EXPECT_NE(Bytes(first.begin() + 256, first.end()), Bytes(44));
}

} // namespace
} // namespace lumbrine::seal
