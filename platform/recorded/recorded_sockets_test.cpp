#include "platform/recorded/recorded_sockets.h"
#include "platform/recorded/testing/recording_bench.h"
#include "platform/virtual/null_platform.h"

#include <cerrno>

namespace lumbrine {
namespace {

using blackbox::DatagramHead;
using blackbox::Kind;
using blackbox::NumericAddress;
using blackbox::SocketEvent;
using blackbox::SocketHead;

NumericAddress addressIn(const PeerAddress& peer) {
    return {.host = {peer.storage[0]}, .port = peer.storage[1]};
}

struct Sockets final : NullDatagrams {
    int receive(int, std::span<std::uint8_t> buffer, PeerAddress& from) override {
        if (arrives.empty()) return -ECONNREFUSED;
        std::ranges::copy(arrives, buffer.begin());
        from.storage[0] = 42;
        from.storage[1] = 7;
        return static_cast<int>(arrives.size());
    }
    int send(int, ByteView bytes, const PeerAddress&) override {
        return full ? -EAGAIN : static_cast<int>(bytes.size());
    }

    Bytes arrives;
    bool full = false;
};

struct RecordedSocketsTest : testing::Test {
    RecordingBench bench;
    Sockets real;
    RecordedSockets sockets{real, bench.recorder, addressIn};
    PeerAddress phone;
    std::array<std::uint8_t, 64> buffer{};
};

TEST_F(RecordedSocketsTest, RecordWhatArrivesAndFromWhom) {
    real.arrives = {0x01, 0x03, 0x05};
    EXPECT_EQ(sockets.receive(3, buffer, phone), 3);
    const auto entry = bench.only();
    EXPECT_EQ(entry.kind, Kind::datagramIn);
    EXPECT_EQ(entry.head<DatagramHead>().peer, (NumericAddress{.host = {42}, .port = 7}));
    EXPECT_EQ(entry.head<DatagramHead>().result, 0);
    EXPECT_EQ(entry.behind<DatagramHead>(), real.arrives);
    EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + 3), real.arrives);
}

TEST_F(RecordedSocketsTest, RecordWhatIsSentAndWhetherItWent) {
    phone.storage[0] = 9;
    EXPECT_EQ(sockets.send(3, Bytes{1, 2}, phone), 2);
    real.full = true;
    EXPECT_EQ(sockets.send(3, Bytes{3}, phone), -EAGAIN);
    const auto entries = bench.entries();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].kind, Kind::datagramOut);
    EXPECT_EQ(entries[0].head<DatagramHead>().result, 0);
    EXPECT_EQ(entries[0].head<DatagramHead>().peer.host[0], 9);
    EXPECT_EQ(entries[0].behind<DatagramHead>(), (Bytes{1, 2}));
    EXPECT_EQ(entries[1].head<DatagramHead>().result, -EAGAIN);
    EXPECT_EQ(entries[1].behind<DatagramHead>(), Bytes{3});
}

TEST_F(RecordedSocketsTest, RecordWhatBecomesOfTheSocket) {
    const int fd = sockets.open();
    sockets.bind(fd, 52700);
    sockets.receive(fd, buffer, phone);
    sockets.close(fd);
    const auto entries = bench.entries();
    ASSERT_EQ(entries.size(), 4U);
    const std::array events{SocketEvent::opened, SocketEvent::bound, SocketEvent::receiveFailed, SocketEvent::closed};
    for (std::size_t i = 0; i < events.size(); ++i) {
        EXPECT_EQ(entries[i].kind, Kind::socket);
        EXPECT_EQ(entries[i].channel, static_cast<int>(events[i]));
    }
    EXPECT_EQ(entries[1].head<SocketHead>().port, 52700U);
    EXPECT_EQ(entries[2].head<SocketHead>().result, -ECONNREFUSED);
}

} // namespace
} // namespace lumbrine
