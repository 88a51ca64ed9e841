#include "platform/recorded/recorded_streams.h"
#include "platform/recorded/testing/recording_bench.h"
#include "platform/virtual/null_platform.h"

#include <cerrno>

namespace lumbrine {
namespace {

using blackbox::Kind;
using blackbox::StreamEvent;
using blackbox::StreamHead;

struct Service final : NullStreams {
    int connect(int, const std::string&, std::uint16_t, Duration) override { return 0; }
    int send(int, ByteView) override { return taken; }
    int receive(int, std::span<std::uint8_t> buffer) override {
        std::ranges::copy(reply, buffer.begin());
        return static_cast<int>(reply.size());
    }

    int taken = 0;
    Bytes reply;
};

struct RecordedStreamsTest : testing::Test {
    RecordingBench bench;
    Service real;
    RecordedStreams streams{real, bench.recorder};
};

TEST_F(RecordedStreamsTest, RecordWhoWasCalledAndWhatWasSaid) {
    streams.connect(4, "127.0.0.1", 31416, seconds(1));
    real.taken = 2;
    streams.send(4, Bytes{1, 2, 3});
    real.reply = {9, 8};
    std::array<std::uint8_t, 16> buffer{};
    streams.receive(4, buffer);
    streams.close(4);
    const auto entries = bench.entries();
    ASSERT_EQ(entries.size(), 4U);
    for (const auto& entry : entries)
        EXPECT_EQ(entry.channel, 4);
    EXPECT_EQ(entries[0].head<StreamHead>().event, StreamEvent::connected);
    EXPECT_EQ(entries[0].textBehind<StreamHead>(), "127.0.0.1:31416");
    EXPECT_EQ(entries[1].kind, Kind::streamOut);
    EXPECT_EQ(entries[1].payload, (Bytes{1, 2})) << "only what the system took";
    EXPECT_EQ(entries[2].kind, Kind::streamIn);
    EXPECT_EQ(entries[2].payload, real.reply);
    EXPECT_EQ(entries[3].head<StreamHead>().event, StreamEvent::closed);
}

TEST_F(RecordedStreamsTest, RecordFailures) {
    real.taken = -EPIPE;
    streams.sendSoon(4, Bytes{1});
    std::array<std::uint8_t, 16> buffer{};
    streams.receive(4, buffer);
    const auto entries = bench.entries();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].head<StreamHead>().event, StreamEvent::sendFailed);
    EXPECT_EQ(entries[0].head<StreamHead>().result, -EPIPE);
    EXPECT_EQ(entries[1].head<StreamHead>().event, StreamEvent::receiveEnded);
    EXPECT_EQ(entries[1].head<StreamHead>().result, 0);
}

TEST_F(RecordedStreamsTest, RecordLongMessagesWhole) {
    Bytes message(10'000);
    for (std::size_t i = 0; i < message.size(); ++i)
        message[i] = static_cast<std::uint8_t>(i * 7);
    real.taken = static_cast<int>(message.size());
    streams.send(4, message);
    Bytes recorded;
    for (const auto& entry : bench.entries())
        append(recorded, entry.payload);
    EXPECT_EQ(recorded, message);
}

} // namespace
} // namespace lumbrine
