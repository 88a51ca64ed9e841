#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/posix/stream_descriptor.h"
#include "tools/stream_relay.h"

#include <poll.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using End = RelayedConnection::End;

// Forwards everything, and ends the connection as a byte in the data asks.
class Passage final : public RelayedConnection {
public:
    Passed fromClient(ByteView bytes) override { return {.toService = {bytes.begin(), bytes.end()}}; }

    Passed fromService(ByteView bytes) override {
        Passed passed{.toClient = {bytes.begin(), bytes.end()}};
        if (std::ranges::count(bytes, 'F') > 0) passed.end = End::finish;
        if (std::ranges::count(bytes, 'D') > 0) passed.end = End::die;
        return passed;
    }
};

bool becomes(short event, const StreamDescriptor& socket) {
    pollfd waited{socket.number(), event, 0};
    return ::poll(&waited, 1, 10'000) == 1;
}

bool readable(const StreamDescriptor& socket) {
    return becomes(POLLIN, socket);
}

// Reads until this many bytes have arrived. Returns fewer when the connection ends.
Bytes hear(const StreamDescriptor& socket, std::size_t size) {
    Bytes heard;
    Bytes buffer(65'536);
    while (heard.size() < size && readable(socket)) {
        const int count = socket.receive(buffer);
        if (count == StreamDescriptor::nothingYet) continue;
        if (count <= 0) break;
        heard.insert(heard.end(), buffer.begin(), buffer.begin() + count);
    }
    return heard;
}

// 0 for an orderly end, else a negative errno value.
int end(const StreamDescriptor& socket) {
    Bytes buffer(65'536);
    while (readable(socket))
        if (const int count = socket.receive(buffer); count <= 0 && count != StreamDescriptor::nothingYet) return count;
    return 1;
}

void say(const StreamDescriptor& socket, const Bytes& bytes) {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const int count = socket.send(ByteView(bytes).subspan(sent));
        ASSERT_GE(count, 0);
        sent += static_cast<std::size_t>(count);
        ASSERT_TRUE(count > 0 || becomes(POLLOUT, socket));
    }
}

class StreamRelayTest : public testing::Test {
protected:
    void start(RelaySetup setup = {}) {
        setup.service = service.localPort();
        setup.connected = [] { return std::make_unique<Passage>(); };
        setup.died = [this] { ++deaths; };
        relay.emplace(runtime, setup);
        ASSERT_TRUE(relay->port());
    }

    void connect() {
        client = StreamDescriptor::connected(*relay->port());
        ASSERT_TRUE(client.isOpen());
        ASSERT_TRUE(readable(service));
        far = service.accept();
        ASSERT_TRUE(far.isOpen());
    }

    RunLoop loop;
    RealRuntime runtime{loop};
    StreamDescriptor service = StreamDescriptor::listening(0);
    std::atomic<int> deaths = 0;
    std::optional<StreamRelay> relay;
    StreamDescriptor client;
    StreamDescriptor far;
};

TEST_F(StreamRelayTest, CarriesBytesBothWays) {
    start();
    connect();
    say(client, {'a', 'b'});
    EXPECT_EQ(hear(far, 2), (Bytes{'a', 'b'}));
    say(far, {'c'});
    EXPECT_EQ(hear(client, 1), Bytes{'c'});
}

TEST_F(StreamRelayTest, CarriesMoreThanASlowReaderTakes) {
    start();
    connect();
    Bytes much(8 * 1024 * 1024);
    for (std::size_t i = 0; i < much.size(); ++i)
        much[i] = static_cast<std::uint8_t>(i % 61);
    const auto sender = runtime.startThread("sender", [&] { say(far, much); });
    runtime.sleepFor(50ms);
    EXPECT_EQ(hear(client, much.size()), much);
}

TEST_F(StreamRelayTest, CutsWhatClientsGetIntoPieces) {
    start({.bytesAtOnce = 1});
    connect();
    const Bytes text(5000, 'x');
    say(far, text);
    EXPECT_EQ(hear(client, text.size()), text);
}

TEST_F(StreamRelayTest, EndsWithEitherSide) {
    start();
    connect();
    say(far, {'a'});
    far = {};
    EXPECT_EQ(hear(client, 1), Bytes{'a'});
    EXPECT_EQ(end(client), 0);
    connect();
    client = {};
    EXPECT_LE(end(far), 0);
}

TEST_F(StreamRelayTest, FinishesAfterWhatWasSaid) {
    start();
    connect();
    say(far, {'a', 'F'});
    EXPECT_EQ(hear(client, 2), (Bytes{'a', 'F'}));
    EXPECT_EQ(end(client), 0);
}

TEST_F(StreamRelayTest, BreaksAllConnectionsWhenItDiesAndComesBackOnTheSamePort) {
    start({.downTime = 1s});
    connect();
    const StreamDescriptor first = std::move(client), firstFar = std::move(far);
    connect();
    say(far, {'D'});
    EXPECT_EQ(end(client), -ECONNRESET);
    EXPECT_EQ(end(first), -ECONNRESET);
    EXPECT_EQ(deaths, 1);
    client = StreamDescriptor::connected(*relay->port());
    EXPECT_FALSE(client.isOpen());
    while (!client.isOpen() || !readable(service)) {
        runtime.sleepFor(5ms);
        client = StreamDescriptor::connected(*relay->port());
    }
    far = service.accept();
    say(far, {'a'});
    EXPECT_EQ(hear(client, 1), Bytes{'a'});
}

TEST_F(StreamRelayTest, LeavesATakenPortAlone) {
    start();
    EXPECT_EQ(StreamRelay(runtime, {.port = *relay->port()}).port(), std::nullopt);
}

TEST_F(StreamRelayTest, ClosesAClientWhoseServiceIsNotThere) {
    start();
    service = {};
    const StreamDescriptor lonely = StreamDescriptor::connected(*relay->port());
    EXPECT_LE(end(lonely), 0);
}

TEST_F(StreamRelayTest, BreaksItsConnectionsWhenItGoes) {
    start();
    connect();
    relay.reset();
    EXPECT_EQ(end(client), -ECONNRESET);
    EXPECT_LE(end(far), 0);
}

} // namespace
} // namespace lumbrine
