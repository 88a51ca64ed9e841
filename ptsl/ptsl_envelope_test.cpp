#include "ptsl/ptsl_envelope.h"
#include "ptsl/testing/languages.h"

namespace lumbrine {
namespace {

TEST(RequestEnvelope, HoldsHeaderAndArguments) {
    EXPECT_EQ(requestEnvelope(PTSLCommand::trackList, "abc", "{}"), (Bytes{0x0A, 0x09,                // header, 9 bytes
                                                                           0x10, 0x03,                // command 3
                                                                           0x18, 0x05,                // version 5
                                                                           0x22, 0x03, 'a', 'b', 'c', // session
                                                                           0x12, 0x02, '{', '}'}));   // arguments
}

TEST(RequestEnvelope, LeavesOutWhatIsEmpty) {
    EXPECT_EQ(requestEnvelope(PTSLCommand::registerClient, "", ""), (Bytes{0x0A, 0x04, 0x10, 0x46, 0x18, 0x05}));
}

TEST(RequestEnvelope, MayBeOfAnOlderVersion) {
    EXPECT_EQ(requestEnvelope(PTSLCommand::registerClient, "", "", 3), (Bytes{0x0A, 0x04, 0x10, 0x46, 0x18, 0x03}));
}

TEST(RequestEnvelope, NumbersTheCommandsAsTheServiceDoes) {
    const auto number = [](PTSLCommand command) { return requestEnvelope(command, "", "").at(3); };
    EXPECT_EQ(number(PTSLCommand::trackList), 3);
    EXPECT_EQ(number(PTSLCommand::registerClient), 70);
    EXPECT_EQ(number(PTSLCommand::setMute), 85);
    EXPECT_EQ(number(PTSLCommand::setSolo), 86);
    EXPECT_EQ(number(PTSLCommand::setInputMonitor), 90);
}

TEST(RequestEnvelope, WritesLengthsAsVarints) {
    const Bytes request = requestEnvelope(PTSLCommand::setMute, std::string(200, 's'), std::string(300, '{'));
    EXPECT_EQ(request.size(), 3u + 4 + 3 + 200 + 3 + 300);
    EXPECT_EQ(Bytes(request.begin(), request.begin() + 10),
              (Bytes{0x0A, 0xCF, 0x01, 0x10, 0x55, 0x18, 0x05, 0x22, 0xC8, 0x01}));
    EXPECT_EQ(Bytes(request.begin() + 210, request.begin() + 213), (Bytes{0x12, 0xAC, 0x02}));
}

TEST(ResponseEnvelope, IsReadFieldByField) {
    EXPECT_EQ(responseEnvelope({0x0A, 0x04,                 // header
                                0x10, 0x03, 0x18, 0x03,     // command 3, status 3
                                0x12, 0x02, '{', '}',       // reply
                                0x1A, 0x03, 'b', 'a', 'd'}, // error
                               english),
              (ResponseEnvelope{3, "{}", "bad"}));
}

TEST(ResponseEnvelope, MayBeEmpty) {
    EXPECT_EQ(responseEnvelope({}, english), ResponseEnvelope{});
}

TEST(ResponseEnvelope, SkipsWhatIsNotListed) {
    EXPECT_EQ(responseEnvelope({0x20, 0x07,                          // field 4
                                0x22, 0x01, 'x',                     // field 4 as bytes
                                0x0A, 0x0F,                          // header:
                                0x0A, 0x02, 'i', 'd',                //   task
                                0x18, 0x04,                          //   status
                                0x29, 1,    2,   3,   4, 5, 6, 7, 8, //   field 5 in fixed width
                                0x2D, 1,    2,   3,   4,             // field 5 in fixed width
                                0x12, 0x02, '{', '}'},
                               english),
              (ResponseEnvelope{4, "{}", ""}));
}

TEST(ResponseEnvelope, SkipsFieldsOfAnotherTypeThanTheirs) {
    EXPECT_EQ(responseEnvelope({0x12, 0x02, '{', '}',         // reply
                                0x10, 0x05,                   // field 2 as a number
                                0x0A, 0x03, 0x1A, 0x01, 'x'}, // status as bytes
                               english),
              (ResponseEnvelope{0, "{}", ""}));
    EXPECT_EQ(responseEnvelope({0x0A, 0x05, 0x18, 0x04, 0x1A, 0x01, 'x'}, english), // a status, and then bytes
              (ResponseEnvelope{4, "", ""}));
}

TEST(ResponseEnvelope, LetsTheLastOfEqualFieldsCount) {
    EXPECT_EQ(
        responseEnvelope({0x12, 0x01, 'a', 0x12, 0x01, 'b', 0x0A, 0x02, 0x18, 0x04, 0x0A, 0x02, 0x18, 0x03}, english),
        (ResponseEnvelope{3, "b", ""}));
}

TEST(ResponseEnvelope, RepairsTextThatIsNotUTF8) {
    EXPECT_EQ(responseEnvelope({0x12, 0x04, '"', 0xE3, 0x81, '"', 0x1A, 0x01, 0xFF}, english),
              (ResponseEnvelope{0, "\"\uFFFD\"", "\uFFFD"}));
}

TEST(ResponseEnvelope, IsAResultAFailureOrNeitherByItsStatus) {
    const auto kindOf = [](std::uint64_t status) {
        const ResponseEnvelope response{status, "", ""};
        return response.hasFailed() ? "failure" : response.isUnfinished() ? "neither" : "result";
    };
    for (const std::uint64_t status : {0U, 1U, 2U, 5U})
        EXPECT_STREQ(kindOf(status), "neither") << status;
    for (const std::uint64_t status : {3U, 6U, 8U})
        EXPECT_STREQ(kindOf(status), "result") << status;
    for (const std::uint64_t status : {4U, 7U})
        EXPECT_STREQ(kindOf(status), "failure") << status;
    EXPECT_FALSE((ResponseEnvelope{0, "{}", ""}.isUnfinished()));
}

TEST(ResponseEnvelope, FailsWhenItOrItsHeaderIsMalformed) {
    const auto cut = responseEnvelope({0x12, 0x05, '{'}, english);
    ASSERT_FALSE(cut);
    EXPECT_EQ(cut.error(), PTSLError::malformedResponse("length exceeds available bytes"));
    const auto header = responseEnvelope({0x0A, 0x01, 0x1B, 0x12, 0x02, '{', '}'}, english);
    ASSERT_FALSE(header);
    EXPECT_EQ(header.error(), PTSLError::malformedResponse("unknown wire type 3"));
}

} // namespace
} // namespace lumbrine
