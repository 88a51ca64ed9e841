// The envelope by hand against the one that the official library makes of the same message definition.
#include "simulator/wire/scripting_envelope.h"

#include <scripting.pb.h>

#include <limits>

namespace lumbrine::interop {
namespace {

constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();

std::optional<ScriptingRequest> decoded(const ::ptsl::Request& request) {
    const std::string bytes = request.SerializeAsString();
    return wire::decodeRequest(Bytes(bytes.begin(), bytes.end()));
}

TEST(Envelope, IsReadAsTheOfficialLibraryWritesIt) {
    ::ptsl::Request request;
    EXPECT_EQ(decoded(request), ScriptingRequest{});
    request.mutable_header();
    EXPECT_EQ(decoded(request), ScriptingRequest{});
    for (const std::int32_t number : {0, 1, 127, 128, 16'384, most, least, -1}) {
        ::ptsl::RequestHeader& header = *request.mutable_header();
        header.set_task_id("仕事 1");
        header.set_command(number);
        header.set_version(number);
        header.set_session_id(std::string(300, 's'));
        header.set_version_minor(number);
        header.set_version_revision(number);
        header.set_versioned_request_header_json("{}");
        request.set_request_body_json(std::string(70'000, 'b'));
        EXPECT_EQ(decoded(request), (ScriptingRequest{.taskID = "仕事 1",
                                                      .command = number,
                                                      .version = number,
                                                      .sessionID = std::string(300, 's'),
                                                      .versionMinor = number,
                                                      .versionRevision = number,
                                                      .versionedHeaderJSON = "{}",
                                                      .bodyJSON = std::string(70'000, 'b')}));
    }
}

TEST(Envelope, IsWrittenAsTheOfficialLibraryReadsIt) {
    for (const std::int32_t number : {0, 1, 127, 128, 16'384, most, least, -1}) {
        const ScriptingReply reply{.taskID = "仕事 1",
                                   .command = number,
                                   .status = ScriptingStatus::failed,
                                   .progress = number,
                                   .version = number,
                                   .versionMinor = number,
                                   .versionRevision = number,
                                   .versionedHeaderJSON = "{}",
                                   .bodyJSON = std::string(70'000, 'b'),
                                   .errorJSON = "e"};
        const Bytes bytes = wire::encodeReply(reply);
        ::ptsl::Response read;
        ASSERT_TRUE(read.ParseFromArray(bytes.data(), static_cast<int>(bytes.size())));
        EXPECT_EQ(read.header().task_id(), reply.taskID);
        EXPECT_EQ(read.header().command(), number);
        EXPECT_EQ(read.header().status(), 4);
        EXPECT_EQ(read.header().progress(), number);
        EXPECT_EQ(read.header().version(), number);
        EXPECT_EQ(read.header().version_minor(), number);
        EXPECT_EQ(read.header().version_revision(), number);
        EXPECT_EQ(read.header().versioned_response_header_json(), "{}");
        EXPECT_EQ(read.response_body_json(), reply.bodyJSON);
        EXPECT_EQ(read.response_error_json(), "e");
        const std::string same = read.SerializeAsString();
        EXPECT_EQ(Bytes(same.begin(), same.end()), bytes);
    }
}

} // namespace
} // namespace lumbrine::interop
