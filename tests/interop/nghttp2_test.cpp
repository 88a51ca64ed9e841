// The wire against the server of nghttp2, which knows nothing of gRPC: it echoes what is posted, or serves files.
#include "ptsl/testing/service_frames.h"
#include "tests/interop/child_process.h"
#include "tests/interop/link_rig.h"
#include "tests/interop/local_server.h"
#include "tests/interop/waiting.h"

#include <fstream>

namespace lumbrine::interop {
namespace {

using testing::HasSubstr;

class NGHTTP2Server : public LinkTest {
protected:
    // Returns when it listens.
    void start(const std::vector<std::string>& options) {
        std::vector<std::string> command{"nghttpd", "--no-tls", "--address=127.0.0.1",
                                         "--htdocs=" + folder.path.string()};
        command.insert(command.end(), options.begin(), options.end());
        command.push_back(std::to_string(port));
        server = std::make_unique<ChildProcess>(command);
        ASSERT_TRUE(waitUntil([&] { return isListenedAt(port); })) << server->output();
    }

    // Makes the file that is served as the answer to every call: a body, prefix included.
    void serve(const Bytes& body) {
        std::filesystem::create_directory(folder.path / "ptsl.PTSL");
        std::ofstream file(folder.path / "ptsl.PTSL" / "SendGrpcRequest", std::ios::binary);
        file.write(reinterpret_cast<const char*>(body.data()), static_cast<std::streamsize>(body.size()));
    }

    TemporaryFolder folder;
    const std::uint16_t port = freeStreamPort();
    std::unique_ptr<ChildProcess> server;
};

Bytes patternOf(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 31);
    return bytes;
}

TEST_F(NGHTTP2Server, ReadsTheHeadersOfACall) {
    start({"--echo-upload", "--verbose"});
    const auto wire = wireTo(port);
    EXPECT_EQ(wire->call(path, Bytes{1, 2, 3}), (Bytes{1, 2, 3}));
    const auto log = [&] { return server->output(); };
    ASSERT_TRUE(waitUntil([&] { return log().find("trailers") != std::string::npos; }));
    EXPECT_THAT(log(), HasSubstr(":method: POST"));
    EXPECT_THAT(log(), HasSubstr(":scheme: http"));
    EXPECT_THAT(log(), HasSubstr(":path: /ptsl.PTSL/SendGrpcRequest"));
    EXPECT_THAT(log(), HasSubstr(":authority: 127.0.0.1:" + std::to_string(port)));
    EXPECT_THAT(log(), HasSubstr("content-type: application/grpc"));
    EXPECT_THAT(log(), HasSubstr("te: trailers"));
    EXPECT_THAT(log(), HasSubstr("[SETTINGS_ENABLE_PUSH(0x02):0]"));
    EXPECT_THAT(log(), HasSubstr("[SETTINGS_INITIAL_WINDOW_SIZE(0x04):8388608]"));
    EXPECT_THAT(log(), HasSubstr("window_size_increment=8388608"));
}

TEST_F(NGHTTP2Server, EchoesCallAfterCallOverOneConnection) {
    start({"--echo-upload"});
    const auto wire = wireTo(port);
    const auto descriptors = openDescriptors();
    for (std::size_t size = 0; size < 16'000; size = size * 2 + 1) {
        const Bytes message = patternOf(size);
        const auto echo = wire->call(path, message);
        ASSERT_TRUE(echo) << errorOf(echo);
        EXPECT_TRUE(*echo == message);
    }
    EXPECT_EQ(openDescriptors(), descriptors + 1);
}

TEST_F(NGHTTP2Server, ReadsPathsOfEveryLength) {
    start({"--echo-upload"});
    const auto wire = wireTo(port);
    for (const std::size_t length : {1u, 126u, 127u, 128u, 254u, 255u, 2000u})
        EXPECT_EQ(wire->call("/" + std::string(length - 1, 'x'), Bytes{7}), Bytes{7}) << length;
}

// A server that has not announced more takes 16,384 bytes in one frame.
TEST_F(NGHTTP2Server, TakesRequestsOfSeveralFrames) {
    start({"--echo-upload"});
    for (const std::size_t size : {16'384u - 5, 16'384u - 4, 2 * 16'384u - 4, 50'000u}) {
        const auto wire = wireTo(port);
        const Bytes message = patternOf(size);
        EXPECT_EQ(wire->call(path, message), message) << size;
    }
}

TEST_F(NGHTTP2Server, EndsAResponseWithItsData) {
    serve(service::body({1, 2, 3}));
    start({});
    EXPECT_EQ(wireTo(port)->call(path, Bytes{}), (Bytes{1, 2, 3}));
}

TEST_F(NGHTTP2Server, EndsAResponseWithTrailers) {
    serve(service::body({1, 2, 3}));
    start({"--trailer=grpc-status: 0"});
    EXPECT_EQ(wireTo(port)->call(path, Bytes{}), (Bytes{1, 2, 3}));
}

// Headers that are longer than a frame go on in CONTINUATION frames, which are left for the next call to read over.
TEST_F(NGHTTP2Server, EndsAResponseWithTrailersOfSeveralFrames) {
    serve(service::body({1, 2, 3}));
    start({"--trailer=filler: " + std::string(40'000, '~')});
    const auto wire = wireTo(port);
    for (int call = 0; call < 3; ++call)
        EXPECT_EQ(wire->call(path, Bytes{}), (Bytes{1, 2, 3}));
}

TEST_F(NGHTTP2Server, MayWantToPush) {
    serve(service::body({1, 2, 3}));
    start({"--push=/ptsl.PTSL/SendGrpcRequest=/other"});
    EXPECT_EQ(wireTo(port)->call(path, Bytes{}), (Bytes{1, 2, 3}));
}

TEST_F(NGHTTP2Server, SendsLargeResponses) {
    const Bytes message = patternOf(8'000'000);
    serve(service::body(message));
    start({});
    const auto wire = wireTo(port);
    for (int call = 0; call < 3; ++call) {
        const auto received = wire->call(path, Bytes{});
        ASSERT_TRUE(received) << errorOf(received);
        EXPECT_TRUE(*received == message);
    }
}

TEST_F(NGHTTP2Server, FailsWhenItPadsItsData) {
    serve(service::body({1, 2, 3}));
    start({"--padding=64"});
    EXPECT_EQ(errorOf(wireTo(port)->call(path, Bytes{})),
              "PTSL malformed response: compressed responses not supported");
}

TEST_F(NGHTTP2Server, MayNotHaveThePage) {
    start({});
    EXPECT_EQ(errorOf(wireTo(port)->call(path, Bytes{})),
              "PTSL malformed response: compressed responses not supported"); // the page that says so
}

TEST_F(NGHTTP2Server, MayHaveSmallWindowsOfItsOwn) {
    start({"--echo-upload", "--window-bits=10", "--connection-window-bits=16"});
    const auto wire = wireTo(port);
    for (int call = 0; call < 200; ++call) {
        const auto echo = wire->call(path, patternOf(500));
        ASSERT_TRUE(echo) << errorOf(echo);
    }
}

} // namespace
} // namespace lumbrine::interop
