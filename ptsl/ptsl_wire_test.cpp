#include "base/testing/segmentations.h"
#include "ptsl/ptsl_wire.h"
#include "ptsl/testing/wire_test.h"

#include <cerrno>

namespace lumbrine {
namespace {

using namespace service;
using namespace std::chrono_literals;

using PTSLWireTest = WireTest;

TEST_F(PTSLWireTest, SaysThatNothingRunsWhenNobodyListens) {
    streams.stopListening(ScriptedService::port);
    EXPECT_EQ(errorOfCall(), PTSLError::notRunning());
    EXPECT_EQ(streams.openCount(), 0u);
    EXPECT_EQ(now(), 0s);
}

TEST_F(PTSLWireTest, SaysThatNothingRunsWhenTheHostCannotBeReached) {
    streams.fail(VirtualStreams::Call::connect, EHOSTUNREACH);
    EXPECT_EQ(errorOfCall(), PTSLError::notRunning());
}

TEST_F(PTSLWireTest, GivesUpConnectingAfterThreeSeconds) {
    streams.listenWithoutAccepting(ScriptedService::port);
    EXPECT_EQ(errorOfCall(), PTSLError::transport("connect() failed errno=" + std::to_string(ETIMEDOUT)));
    EXPECT_EQ(now(), 3s);
    EXPECT_EQ(streams.openCount(), 0u);
}

TEST_F(PTSLWireTest, GreetsWithPrefaceSettingsAndWindow) {
    ASSERT_TRUE(wire.open());
    const std::string_view preface = "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n";
    EXPECT_EQ(scripted.received.at(0),
              joined({Bytes(preface.begin(), preface.end()),
                      {0, 0, 12, 4, 0, 0, 0, 0, 0},         // SETTINGS
                      {0x00, 0x02, 0x00, 0x00, 0x00, 0x00}, // no push
                      {0x00, 0x04, 0x00, 0x80, 0x00, 0x00}, // a window of 8,388,608 for each stream
                      {0, 0, 4, 8, 0, 0, 0, 0, 0},          // WINDOW_UPDATE of the connection
                      {0x00, 0x80, 0x00, 0x00}}));
    EXPECT_EQ(now(), 0s);
}

// Sockets that record the calls to them.
class ObservedSockets final : public StreamSockets {
public:
    explicit ObservedSockets(StreamSockets& sockets) : sockets(sockets) {}

    int open() override { return note("open", sockets.open()); }
    int connect(int fd, const std::string& host, std::uint16_t port, Duration limit) override {
        return note("connect to " + host + ":" + std::to_string(port), sockets.connect(fd, host, port, limit));
    }
    int setReceiveTimeout(int fd, Duration limit) override {
        return note("receive for " + std::to_string(limit / 1us) + " us", sockets.setReceiveTimeout(fd, limit));
    }
    int setSendTimeout(int fd, Duration limit) override {
        return note("send for " + std::to_string(limit / 1us) + " us", sockets.setSendTimeout(fd, limit));
    }
    int setNoDelay(int fd) override { return note("no delay", sockets.setNoDelay(fd)); }
    int setNoSignal(int fd) override { return note("no signal", sockets.setNoSignal(fd)); }
    int send(int fd, ByteView bytes) override { return note("send", sockets.send(fd, bytes)); }
    int sendSoon(int fd, ByteView bytes) override { return note("send soon", sockets.sendSoon(fd, bytes)); }
    int receive(int fd, std::span<std::uint8_t> buffer) override { return sockets.receive(fd, buffer); }
    void close(int fd) override {
        done.emplace_back("close");
        sockets.close(fd);
    }
    void shutDown() override { sockets.shutDown(); }

    std::vector<std::string> done;

private:
    int note(const std::string& what, int result) {
        done.push_back(what);
        return result;
    }

    StreamSockets& sockets;
};

TEST_F(PTSLWireTest, PreparesItsSocketBeforeItGreets) {
    ObservedSockets sockets(streams);
    PTSLWire observed(runtime, sockets, Bilingual(false), "127.0.0.1", ScriptedService::port, 3.0);
    ASSERT_TRUE(observed.open());
    EXPECT_EQ(sockets.done, (std::vector<std::string>{"open", "connect to 127.0.0.1:31416", "receive for 3000000 us",
                                                      "send for 3000000 us", "no delay", "no signal", "send"}));
    sockets.done.clear();
    ASSERT_TRUE(observed.open());
    ASSERT_GE(sockets.done.size(), 2u);
    EXPECT_EQ(sockets.done[0], "close");
    EXPECT_EQ(sockets.done[1], "open");
}

TEST_F(PTSLWireTest, SendsOneFrameOfHeadersAndOneOfData) {
    EXPECT_EQ(call({7, 8, 9}), (Bytes{0xCA, 0xFE}));
    const auto frames = scripted.frames(1);
    ASSERT_GE(frames.size(), 4u);
    EXPECT_EQ(frames[2].type, 1);
    EXPECT_EQ(frames[2].flags, 0x04);
    EXPECT_EQ(frames[2].stream, 1u);
    const Bytes& block = frames[2].payload;
    ASSERT_EQ(block.size(), 2u + 2 + 26 + 2 + 15 + 3 + 16 + 4 + 9);
    EXPECT_EQ(Bytes(block.begin(), block.begin() + 5), (Bytes{0x83, 0x86, 0x04, 0x1A, '/'}));
    EXPECT_EQ(std::string(block.begin() + 32, block.begin() + 47), "127.0.0.1:31416");
    EXPECT_EQ(frames[3], (SentFrame{0, 0x01, 1, {0, 0, 0, 0, 3, 7, 8, 9}}));
}

TEST_F(PTSLWireTest, StaysConnectedAndTakesAFreshStreamForEachCall) {
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(call());
    std::vector<std::uint32_t> used;
    for (const SentFrame& frame : scripted.framesOfType(1))
        used.push_back(frame.stream);
    EXPECT_EQ(used, (std::vector<std::uint32_t>{1, 3, 5}));
    EXPECT_EQ(scripted.received.size(), 1u);
}

TEST_F(PTSLWireTest, BeginsAgainWithStreamOneAfterAReset) {
    EXPECT_TRUE(call());
    wire.close();
    EXPECT_EQ(streams.openCount(), 0u);
    EXPECT_TRUE(call());
    ASSERT_EQ(scripted.received.size(), 2u);
    EXPECT_EQ(scripted.frames(2).at(2).stream, 1u);
}

TEST_F(PTSLWireTest, OpensAgainWhenAskedTo) {
    EXPECT_TRUE(wire.open());
    EXPECT_TRUE(call());
    EXPECT_TRUE(wire.open());
    EXPECT_EQ(streams.openCount(), 1u);
    EXPECT_TRUE(call());
    EXPECT_EQ(scripted.frames(2).at(2).stream, 1u);
}

TEST_F(PTSLWireTest, ClosesItsConnectionWhenItGoes) {
    {
        PTSLWire passing(runtime, streams, Bilingual(false), "127.0.0.1", ScriptedService::port, 3.0);
        EXPECT_TRUE(passing.call(path, Bytes{}));
        EXPECT_EQ(streams.openCount(), 1u);
    }
    EXPECT_EQ(streams.openCount(), 0u);
}

TEST_F(PTSLWireTest, AnswersTheServiceBeforeTheResponse) {
    scripted.greet = [](VirtualLine& line) {
        line.send(joined({settings(), settingsAck(), windowUpdate(0, 100), ping(0x5A)}));
    };
    EXPECT_TRUE(call());
    const auto frames = scripted.frames(1);
    ASSERT_EQ(frames.size(), 7u);
    EXPECT_EQ(frames[4], (SentFrame{4, 1, 0, {}}));
    EXPECT_EQ(frames[5], (SentFrame{6, 1, 0, Bytes(8, 0x5A)}));
    EXPECT_EQ(frames[6], (SentFrame{8, 0, 0, {0, 0, 0, 7}}));
}

TEST_F(PTSLWireTest, LeavesOnlyTheAnswersAfterTheResponseWithoutHurry) {
    ObservedSockets sockets(streams);
    PTSLWire observed(runtime, sockets, Bilingual(false), "127.0.0.1", ScriptedService::port, 3.0);
    ASSERT_TRUE(observed.open());
    scripted.answer = [](Call& got) {
        got.line.send(ping(1));
        got.line.send(response(got.stream, {2}));
    };
    sockets.done.clear();
    EXPECT_EQ(observed.call(path, Bytes{1}), Bytes{2});
    EXPECT_EQ(sockets.done, (std::vector<std::string>{"send", "send", "send soon"})); // request, PING's answer, credit
}

TEST_F(PTSLWireTest, UnderstandsAResponseHoweverItArrives) {
    const Bytes whole = joined({settings(), response(1, {1, 2, 3})});
    for (const auto& pieces : segmentationsOf(whole)) {
        scripted.answer = [&](Call& got) {
            for (const Bytes& piece : pieces)
                got.line.send(piece);
        };
        wire.close();
        EXPECT_EQ(call(), (Bytes{1, 2, 3}));
    }
}

TEST_F(PTSLWireTest, KeepsWhatCameWithAResponseForTheNextCall) {
    scripted.answer = [](Call& got) {
        if (got.number == 1) got.line.send(joined({response(1, {1}), settings(), response(3, {2})}));
    };
    EXPECT_EQ(call(), Bytes{1});
    EXPECT_EQ(call(), Bytes{2});
    EXPECT_EQ(scripted.frames(1).back().type, 8);
}

TEST_F(PTSLWireTest, LeavesTheConnectionAsItIsAfterAFailure) {
    scripted.answer = [](Call& got) {
        got.line.send(got.number == 1 ? rstStream(got.stream) : response(got.stream, {2}));
    };
    EXPECT_EQ(errorOfCall(), PTSLError::transport("stream was reset"));
    EXPECT_EQ(call(), Bytes{2});
    EXPECT_EQ(scripted.received.size(), 1u);
    EXPECT_EQ(scripted.framesOfType(1).at(1).stream, 3u);
}

TEST_F(PTSLWireTest, SpeaksJapanese) {
    scripted.answer = [](Call& got) { got.line.finish(); };
    const auto result = japaneseWire.call(path, Bytes{});
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), PTSLError::transport("接続が切れた"));
}

TEST_F(PTSLWireTest, CarriesLargeMessagesBothWays) {
    Bytes large(1'000'000);
    for (std::size_t i = 0; i < large.size(); ++i)
        large[i] = static_cast<std::uint8_t>(i * 7);
    Bytes got;
    scripted.answer = [&](Call& asked) {
        got = asked.message;
        const Bytes whole = body(large);
        asked.line.send(headers(asked.stream));
        for (std::size_t at = 0; at < whole.size(); at += 16'384) {
            const auto begin = whole.begin() + static_cast<std::ptrdiff_t>(at);
            const auto size = static_cast<std::ptrdiff_t>(std::min<std::size_t>(16'384, whole.size() - at));
            asked.line.send(data(asked.stream, Bytes(begin, begin + size)));
        }
        asked.line.send(trailers(asked.stream));
    };
    const auto result = call(large);
    ASSERT_TRUE(result);
    EXPECT_TRUE(*result == large);
    EXPECT_TRUE(got == large);
}

} // namespace
} // namespace lumbrine
