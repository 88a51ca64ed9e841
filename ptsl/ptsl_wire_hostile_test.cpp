// Peers that are no scripting service, or that break the rules of HTTP/2 and gRPC.
#include "base/testing/segmentations.h"
#include "ptsl/testing/wire_test.h"

namespace lumbrine {
namespace {

using namespace service;
using namespace std::chrono_literals;

class HostileService : public WireTest {
protected:
    // The result of a call when the service sends only these bytes and then closes the connection or falls silent.
    PTSLError afterWhich(const Bytes& sent, bool closes) {
        wire.close();
        scripted.answer = [&](Call& got) {
            got.line.send(sent);
            if (closes) got.line.finish();
        };
        return errorOfCall();
    }

    const PTSLError lost = PTSLError::transport("connection lost");
};

Bytes textBytes(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST_F(HostileService, MayBeAWebServer) {
    const Bytes refusal = textBytes("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    EXPECT_EQ(afterWhich(refusal, true), lost);
    EXPECT_EQ(afterWhich(refusal, false), PTSLError::timedOut());
}

TEST_F(HostileService, MaySpeakTLS) {
    const Bytes alert{0x15, 0x03, 0x01, 0x00, 0x02, 0x02, 0x46};
    EXPECT_EQ(afterWhich(alert, true), lost);
    EXPECT_EQ(afterWhich(alert, false), PTSLError::timedOut());
}

TEST_F(HostileService, MayCloseBeforeItIsAsked) {
    scripted.greet = [](VirtualLine& line) { line.finish(); };
    EXPECT_EQ(errorOfCall(), lost);
}

TEST_F(HostileService, MayCloseAfterEachByteOfAResponse) {
    const Bytes whole = joined({settings(), response(1, {1, 2, 3})});
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(afterWhich(cutAt(whole, length).front(), true), lost) << length;
}

TEST_F(HostileService, MayAnnounceTheLargestFrameAndSendNothingOfIt) {
    EXPECT_EQ(afterWhich({0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 1}, true), lost);
    EXPECT_EQ(afterWhich({0xFF, 0xFF, 0xFF, 6, 0, 0, 0, 0, 1}, false), PTSLError::timedOut());
}

TEST_F(HostileService, MaySendTheLargestFrames) {
    const Bytes largest = frame(0, 0x01, 1, Bytes(0xFFFFFF));
    EXPECT_EQ(afterWhich(largest, false), PTSLError::transport("stream was reset"));
    const Bytes ignored = joined({frame(9, 0, 1, Bytes(0xFFFFFF)), response(1, {7})});
    wire.close();
    scripted.answer = [&](Call& got) { got.line.send(ignored); };
    EXPECT_EQ(call(), Bytes{7});
}

TEST_F(HostileService, MayRepeatAFrameWithoutEnd) {
    for (const Bytes& repeated :
         {headers(1), data(1, {}), data(3, {1}), windowUpdate(1, 1), frame(9, 0, 1, {1}), frame(5, 0, 1, {0, 0, 0, 2}),
          frame(2, 0, 1, Bytes(5)), rstStream(3), settingsAck()}) {
        wire.close();
        const Duration begin = now();
        scripted.answer = [&](Call& got) {
            for (int i = 0; i < 2000; ++i)
                got.line.send(repeated, i * 2ms);
        };
        EXPECT_EQ(errorOfCall(), PTSLError::timedOut());
        EXPECT_EQ(now() - begin, 3s);
    }
}

TEST_F(HostileService, MaySendAnything) {
    for (int round = 0; round < 300; ++round) {
        wire.close();
        const Duration begin = now();
        scripted.answer = [&](Call& got) {
            for (std::uint64_t pieces = runtime.random() % 20; pieces > 0; --pieces) {
                Bytes piece(runtime.random() % 40);
                for (std::uint8_t& byte : piece)
                    byte = static_cast<std::uint8_t>(runtime.random() % (round % 2 == 0 ? 256 : 10));
                got.line.send(piece, Duration(runtime.random() % 4'000'000'000));
            }
            if (runtime.random() % 2 == 0) got.line.finish();
        };
        call();
        EXPECT_LE(now() - begin, 6s);
        EXPECT_EQ(streams.openCount(), 1u);
    }
}

TEST_F(HostileService, MayHaveBeenReplacedByASoundOne) {
    EXPECT_EQ(afterWhich(textBytes("SSH-2.0-OpenSSH_9.2\r\n"), true), lost);
    wire.close();
    scripted.answer = [](Call& got) { got.line.send(response(got.stream, {7})); };
    EXPECT_EQ(call(), Bytes{7});
}

} // namespace
} // namespace lumbrine
