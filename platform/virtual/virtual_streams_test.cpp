#include "platform/virtual/virtual_streams.h"

#include <cerrno>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

constexpr std::uint16_t port = 31416;

class VirtualStreamsTest : public testing::Test {
protected:
    class Recorder final : public StreamPeer {
    public:
        Recorder(VirtualStreamsTest& test, VirtualLine held) : test(test) { test.line = std::move(held); }
        ~Recorder() override { ++test.goneCount; }
        void received(ByteView bytes) override { test.atFarEnd.emplace_back(bytes.begin(), bytes.end()); }

    private:
        VirtualStreamsTest& test;
    };

    void listen(Duration latency = 0ms) {
        streams.listen(
            port, [this](VirtualLine held) { return std::make_unique<Recorder>(*this, std::move(held)); }, latency);
    }

    int connected() {
        const int fd = streams.open();
        EXPECT_EQ(streams.connect(fd, "127.0.0.1", port, 3s), 0);
        return fd;
    }

    // The result and, when there are any, the bytes.
    std::pair<int, Bytes> receive(int fd, std::size_t size = 100) {
        Bytes buffer(size);
        const int received = streams.receive(fd, buffer);
        buffer.resize(received > 0 ? static_cast<std::size_t>(received) : 0);
        return {received, buffer};
    }

    Duration now() const { return runtime.now().time_since_epoch(); }

    VirtualRuntime runtime;
    VirtualStreams streams{runtime};
    VirtualLine line{{}};
    std::vector<Bytes> atFarEnd;
    int goneCount = 0;
};

using Received = std::pair<int, Bytes>;

TEST_F(VirtualStreamsTest, RefusesAPortThatNobodyListensAt) {
    const int fd = streams.open();
    EXPECT_EQ(streams.connect(fd, "127.0.0.1", port, 3s), -ECONNREFUSED);
    EXPECT_EQ(streams.connect(fd, "192.168.1.7", port, 3s), -EHOSTUNREACH);
    listen();
    EXPECT_EQ(streams.connect(fd, "127.0.0.1", port, 3s), 0);
    streams.stopListening(port);
    EXPECT_EQ(streams.connect(streams.open(), "127.0.0.1", port, 3s), -ECONNREFUSED);
    EXPECT_TRUE(line.isOpen());
    EXPECT_EQ(now(), 0s);
}

TEST_F(VirtualStreamsTest, TakesItsTimeToAccept) {
    listen(200ms);
    connected();
    EXPECT_EQ(now(), 200ms);
    EXPECT_EQ(streams.connect(streams.open(), "127.0.0.1", port, 50ms), -ETIMEDOUT);
    EXPECT_EQ(now(), 250ms);
}

TEST_F(VirtualStreamsTest, LeavesAConnectingUnanswered) {
    streams.listenWithoutAccepting(port);
    EXPECT_EQ(streams.connect(streams.open(), "127.0.0.1", port, 3s), -ETIMEDOUT);
    EXPECT_EQ(now(), 3s);
}

TEST_F(VirtualStreamsTest, HandsTheFarEndWhatIsSent) {
    listen();
    const int fd = connected();
    EXPECT_EQ(streams.send(fd, Bytes{1, 2}), 2);
    EXPECT_EQ(streams.send(fd, Bytes{3}), 1);
    EXPECT_EQ(atFarEnd, (std::vector<Bytes>{{1, 2}, {3}}));
}

TEST_F(VirtualStreamsTest, BringsPiecesInOrderAndEachByItself) {
    listen();
    const int fd = connected();
    line.send(Bytes{1, 2, 3}, 20ms);
    line.send(Bytes{4}, 10ms);
    EXPECT_EQ(receive(fd), (Received{3, {1, 2, 3}}));
    EXPECT_EQ(now(), 20ms);
    EXPECT_EQ(receive(fd), (Received{1, {4}}));
    EXPECT_EQ(now(), 20ms);
    line.send(Bytes{5, 6, 7});
    EXPECT_EQ(receive(fd, 2), (Received{2, {5, 6}}));
    EXPECT_EQ(receive(fd, 2), (Received{1, {7}}));
}

TEST_F(VirtualStreamsTest, DripsOneByteEachInterval) {
    listen();
    const int fd = connected();
    line.drip(Bytes{7, 8}, 500ms);
    EXPECT_EQ(receive(fd), (Received{1, {7}}));
    EXPECT_EQ(now(), 500ms);
    EXPECT_EQ(receive(fd), (Received{1, {8}}));
    EXPECT_EQ(now(), 1s);
}

TEST_F(VirtualStreamsTest, EndsAReceiveExactlyAtItsTimeOut) {
    listen();
    const int fd = connected();
    EXPECT_EQ(streams.setReceiveTimeout(fd, 3s), 0);
    line.send(Bytes{1}, 3s);
    line.send(Bytes{2}, 6s + 1ns);
    EXPECT_EQ(receive(fd), (Received{1, {1}}));
    EXPECT_EQ(receive(fd).first, -EAGAIN);
    EXPECT_EQ(now(), 6s);
    EXPECT_EQ(receive(fd), (Received{1, {2}}));
}

TEST_F(VirtualStreamsTest, WakesAReceiveWhenSomethingIsSentMeanwhile) {
    listen();
    const int fd = connected();
    runtime.backgroundAfter(1s, [this] { line.send(Bytes{9}); });
    EXPECT_EQ(receive(fd), (Received{1, {9}}));
    EXPECT_EQ(now(), 1s);
}

TEST_F(VirtualStreamsTest, ReportsTheOrderlyEndAfterTheBytesSentBefore) {
    listen();
    const int fd = connected();
    line.send(Bytes{1});
    line.finish(1s);
    line.send(Bytes{2});
    EXPECT_FALSE(line.isOpen());
    EXPECT_EQ(receive(fd), (Received{1, {1}}));
    EXPECT_EQ(receive(fd).first, 0);
    EXPECT_EQ(receive(fd).first, 0);
    EXPECT_EQ(now(), 1s);
    EXPECT_EQ(streams.send(fd, Bytes{3}), 1);
}

TEST_F(VirtualStreamsTest, LosesEverythingWithAReset) {
    listen();
    const int fd = connected();
    line.send(Bytes{1});
    line.reset();
    EXPECT_EQ(receive(fd).first, -ECONNRESET);
    EXPECT_EQ(streams.send(fd, Bytes{1}), -ECONNRESET);
}

TEST_F(VirtualStreamsTest, WakesAReceiveWithAReset) {
    listen();
    const int fd = connected();
    runtime.backgroundAfter(1s, [this] { line.reset(); });
    EXPECT_EQ(receive(fd).first, -ECONNRESET);
    EXPECT_EQ(now(), 1s);
}

TEST_F(VirtualStreamsTest, MakesASendWaitForAFarEndThatDoesNotRead) {
    listen();
    const int fd = connected();
    EXPECT_EQ(streams.setSendTimeout(fd, 2s), 0);
    line.stopReading();
    EXPECT_EQ(streams.send(fd, Bytes(VirtualStreams::stalledCapacity + 1)),
              static_cast<int>(VirtualStreams::stalledCapacity));
    EXPECT_EQ(streams.send(fd, Bytes{1}), -EAGAIN);
    EXPECT_EQ(now(), 2s);
    EXPECT_TRUE(atFarEnd.empty());
    runtime.backgroundAfter(1s, [this] { line.readAgain(); });
    EXPECT_EQ(streams.send(fd, Bytes{1}), 1);
    EXPECT_EQ(now(), 3s);
    ASSERT_EQ(atFarEnd.size(), 2u);
    EXPECT_EQ(atFarEnd[0].size(), VirtualStreams::stalledCapacity);
}

TEST_F(VirtualStreamsTest, LetsTheFarEndGoWhenTheNearEndCloses) {
    listen();
    const int fd = connected();
    EXPECT_EQ(streams.openCount(), 1u);
    streams.close(fd);
    EXPECT_EQ(streams.openCount(), 0u);
    EXPECT_EQ(goneCount, 1);
    EXPECT_FALSE(line.isOpen());
    line.send(Bytes{1});
    EXPECT_EQ(streams.send(fd, Bytes{1}), -EBADF);
    EXPECT_EQ(receive(fd).first, -EBADF);
}

TEST_F(VirtualStreamsTest, FailsTheNextCallsOnCommand) {
    listen();
    using Call = VirtualStreams::Call;
    streams.fail(Call::open, EMFILE, 2);
    EXPECT_EQ(streams.open(), -EMFILE);
    EXPECT_EQ(streams.open(), -EMFILE);
    const int fd = connected();
    streams.fail(Call::send, EPIPE);
    EXPECT_EQ(streams.send(fd, Bytes{1}), -EPIPE);
    EXPECT_EQ(streams.send(fd, Bytes{1}), -EPIPE);
    streams.fail(Call::send, 0);
    EXPECT_EQ(streams.send(fd, Bytes{1}), 1);
    streams.fail(Call::send, EINTR, 1, 1);
    EXPECT_EQ(streams.send(fd, Bytes{1}), 1);
    EXPECT_EQ(streams.send(fd, Bytes{1}), -EINTR);
    EXPECT_EQ(streams.send(fd, Bytes{1}), 1);
}

TEST_F(VirtualStreamsTest, EndsWhatWaitsWhenTheProgramEnds) {
    listen();
    const int fd = connected();
    runtime.backgroundAfter(1s, [this] { streams.shutDown(); });
    EXPECT_EQ(receive(fd).first, 0);
    EXPECT_EQ(now(), 1s);
    EXPECT_EQ(streams.send(fd, Bytes{1}), -EPIPE);
    EXPECT_EQ(streams.open(), -ESHUTDOWN);
}

TEST_F(VirtualStreamsTest, EndsWhatWaitsWhenTheWorldEnds) {
    auto ending = std::make_unique<VirtualRuntime>();
    VirtualStreams its(*ending);
    its.listen(port, [this](VirtualLine held) { return std::make_unique<Recorder>(*this, std::move(held)); });
    int result = 0;
    ending->background(Priority::utility, [&] {
        const int fd = its.open();
        its.connect(fd, "127.0.0.1", port, 3s);
        Bytes buffer(10);
        result = its.receive(fd, buffer);
    });
    ending->runFor(1s);
    ending.reset();
    EXPECT_EQ(result, -ECANCELED);
}

} // namespace
} // namespace lumbrine
