#include "simulator/wire/scripting_envelope.h"

namespace lumbrine::wire {
namespace {

TEST(ScriptingEnvelope, IsDecodedFieldByField) {
    const Bytes bytes{
        0x0A, 0x1A,                                                       // header
        0x0A, 0x01, 't',                                                  // task
        0x10, 0x03,                                                       // command 3
        0x18, 0x05,                                                       // version 5
        0x22, 0x02, 'i',  'd',                                            // session
        0x28, 0x01,                                                       // minor 1
        0x30, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01, // revision -1
        0x3A, 0x00,                                                       // versioned header: nothing
        0x12, 0x02, '{',  '}',                                            // body
    };
    EXPECT_EQ(decodeRequest(bytes), (ScriptingRequest{.taskID = "t",
                                                      .command = 3,
                                                      .version = 5,
                                                      .sessionID = "id",
                                                      .versionMinor = 1,
                                                      .versionRevision = -1,
                                                      .bodyJSON = "{}"}));
    EXPECT_EQ(decodeRequest({}), ScriptingRequest{});
}

TEST(ScriptingEnvelope, PassesOverFieldsThatNobodyKnows) {
    const Bytes bytes{
        0x18, 0x01,                                  // field 3, varint
        0x21, 1,    2,    3,    4,    5,    6, 7, 8, // field 4, fixed64
        0x2D, 1,    2,    3,    4,                   // field 5, fixed32
        0x82, 0x01, 0x01, 'x',                       // field 16, bytes
        0x10, 0x07,                                  // field 2 as a varint: not the body
        0x0A, 0x04, 0x48, 0x01, 0x10, 0x0D,          // in the header field 9, and the command
    };
    EXPECT_EQ(decodeRequest(bytes), (ScriptingRequest{.command = 13}));
}

TEST(ScriptingEnvelope, TakesTheLastOfAFieldThatComesTwice) {
    EXPECT_EQ(decodeRequest(Bytes{0x12, 0x01, 'a', 0x12, 0x01, 'b'}), (ScriptingRequest{.bodyJSON = "b"}));
}

TEST(ScriptingEnvelope, IsRefusedWhereItIsMalformed) {
    const std::map<std::string, Bytes> messages{
        {"a tag that goes on", {0x80}},
        {"field 0", {0x02, 0x00}},
        {"no value", {0x18}},
        {"a varint without an end", {0x18, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x01}},
        {"a length beyond the end", {0x12, 0x02, 'a'}},
        {"an enormous length", {0x12, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01}},
        {"fixed64 that is cut off", {0x21, 1, 2, 3, 4, 5, 6, 7}},
        {"fixed32 that is cut off", {0x2D, 1, 2, 3}},
        {"a group", {0x0B}},
        {"no UTF-8 in the body", {0x12, 0x01, 0xFF}},
        {"no UTF-8 in the header", {0x0A, 0x03, 0x22, 0x01, 0xFF}},
        {"a header that is malformed inside", {0x0A, 0x01, 0x10}},
    };
    for (const auto& [what, message] : messages)
        EXPECT_EQ(decodeRequest(message), std::nullopt) << what;
}

TEST(ScriptingEnvelope, OfAReplyHasTheFieldsThatHaveAValue) {
    ScriptingReply reply;
    reply.taskID = "t";
    reply.command = 3;
    reply.status = ScriptingStatus::failed;
    reply.progress = 100;
    reply.version = 5;
    reply.versionRevision = -1;
    reply.errorJSON = std::string(200, 'e');
    Bytes expected{
        0x0A, 0x16,                                                       // header
        0x0A, 0x01, 't',                                                  // task
        0x10, 0x03,                                                       // command
        0x18, 0x04,                                                       // status
        0x20, 0x64,                                                       // progress
        0x28, 0x05,                                                       // version
        0x38, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01, // revision
        0x1A, 0xC8, 0x01,                                                 // error of 200 bytes
    };
    expected.insert(expected.end(), 200, 'e');
    EXPECT_EQ(encodeReply(reply), expected);
    EXPECT_EQ(encodeReply({.status = ScriptingStatus::queued}), Bytes{});
}

} // namespace
} // namespace lumbrine::wire
