#include "simulator/envelope/scripting_envelope.h"

#include <scripting.pb.h>

namespace lumbrine {
namespace {

TEST(ScriptingEnvelope, HoldsEveryFieldOfARequest) {
    EXPECT_EQ(requestIn({}), ScriptingRequest{});
    ::ptsl::Request envelope;
    ::ptsl::RequestHeader& header = *envelope.mutable_header();
    header.set_task_id("仕事 1");
    header.set_command(85);
    header.set_version(5);
    header.set_session_id("S-1");
    header.set_version_minor(6);
    header.set_version_revision(-7);
    header.set_versioned_request_header_json("{}");
    envelope.set_request_body_json("body");
    EXPECT_EQ(requestIn(envelope), (ScriptingRequest{.taskID = "仕事 1",
                                                     .command = 85,
                                                     .version = 5,
                                                     .sessionID = "S-1",
                                                     .versionMinor = 6,
                                                     .versionRevision = -7,
                                                     .versionedHeaderJSON = "{}",
                                                     .bodyJSON = "body"}));
}

TEST(ScriptingEnvelope, HoldsEveryFieldOfAReply) {
    ::ptsl::Response envelope;
    putInto(envelope, {.taskID = "仕事 1",
                       .command = 85,
                       .status = ScriptingStatus::failed,
                       .progress = 50,
                       .version = 5,
                       .versionMinor = 6,
                       .versionRevision = -7,
                       .versionedHeaderJSON = "{}",
                       .bodyJSON = "body",
                       .errorJSON = "error"});
    EXPECT_EQ(envelope.header().task_id(), "仕事 1");
    EXPECT_EQ(envelope.header().command(), 85);
    EXPECT_EQ(envelope.header().status(), 4);
    EXPECT_EQ(envelope.header().progress(), 50);
    EXPECT_EQ(envelope.header().version(), 5);
    EXPECT_EQ(envelope.header().version_minor(), 6);
    EXPECT_EQ(envelope.header().version_revision(), -7);
    EXPECT_EQ(envelope.header().versioned_response_header_json(), "{}");
    EXPECT_EQ(envelope.response_body_json(), "body");
    EXPECT_EQ(envelope.response_error_json(), "error");
}

} // namespace
} // namespace lumbrine
