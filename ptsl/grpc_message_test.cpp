#include "ptsl/grpc_message.h"
#include "ptsl/testing/languages.h"

namespace lumbrine {
namespace {

// The error texts of a failure, in both languages.
std::pair<std::string, std::string> failureOf(const Bytes& body) {
    std::vector<std::string> details;
    for (const bool isJa : {false, true}) {
        const auto message = unframe(body, Bilingual(isJa));
        details.push_back(message ? "no failure" : message.error().detail);
        if (!message) {
            EXPECT_EQ(message.error().kind, PTSLError::Case::malformedResponse);
        }
    }
    return {details[0], details[1]};
}

using Texts = std::pair<std::string, std::string>;

TEST(GRPCMessage, GetsAPrefixOfFiveBytes) {
    EXPECT_EQ(grpcMessage(Bytes{}), (Bytes{0, 0, 0, 0, 0}));
    EXPECT_EQ(grpcMessage(Bytes{7, 8}), (Bytes{0, 0, 0, 0, 2, 7, 8}));
    const Bytes framed = grpcMessage(Bytes(0x012345, 0xAA));
    EXPECT_EQ(Bytes(framed.begin(), framed.begin() + 6), (Bytes{0x00, 0x00, 0x01, 0x23, 0x45, 0xAA}));
    EXPECT_EQ(framed.size(), 0x012345u + 5);
}

TEST(GRPCMessage, LosesThePrefixAgain) {
    EXPECT_EQ(unframe(Bytes{0, 0, 0, 0, 2, 7, 8}, english), (Bytes{7, 8}));
    EXPECT_EQ(unframe(Bytes{0, 0, 0, 0, 0}, english), Bytes{});
}

TEST(GRPCMessage, IsTheFirstOfABodyThatHoldsMore) {
    EXPECT_EQ(unframe(Bytes{0, 0, 0, 0, 1, 7, 0, 0, 0, 0, 1, 8}, english), Bytes{7});
}

TEST(GRPCMessage, FailsWithoutAWholePrefix) {
    const Texts tooShort{"gRPC frame too short", "gRPC 枠が短すぎる"};
    EXPECT_EQ(failureOf({}), tooShort);
    EXPECT_EQ(failureOf({0, 0, 0, 0}), tooShort);
    EXPECT_EQ(failureOf({1, 0, 0, 0}), tooShort);
}

TEST(GRPCMessage, FailsWhenItIsCompressed) {
    const Texts compressed{"compressed responses not supported", "圧縮された応答は未対応"};
    EXPECT_EQ(failureOf({1, 0, 0, 0, 1, 7}), compressed);
    EXPECT_EQ(failureOf({0xFF, 0, 0, 0, 1}), compressed);
}

TEST(GRPCMessage, FailsWhenTheBodyIsShorterThanAnnounced) {
    const Texts incomplete{"gRPC body incomplete", "gRPC 本体が足りない"};
    EXPECT_EQ(failureOf({0, 0, 0, 0, 10, 1, 2, 3, 4, 5, 6, 7, 8, 9}), incomplete);
    EXPECT_EQ(failureOf({0, 0xFF, 0xFF, 0xFF, 0xFF, 1}), incomplete);
    EXPECT_EQ(unframe(Bytes{0, 0, 0, 0, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9}, english), (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

} // namespace
} // namespace lumbrine
