#include "platform/virtual/virtual_runtime.h"
#include "surface/midi_host.h"
#include "surface/testing/recording_midi_services.h"

namespace lumbrine {
namespace {

using Packets = std::vector<Bytes>;

const Bytes systemReset{0xFF};
constexpr Duration nanosecond{1};

class MIDIPresence : public ::testing::Test {
protected:
    std::size_t resets() const {
        EXPECT_EQ(services.sent, Packets(services.sent.size(), systemReset));
        return services.sent.size();
    }

    VirtualRuntime runtime;
    RecordingMIDIServices services;
    std::shared_ptr<MIDIHost> host = std::make_shared<MIDIHost>(runtime, services, "Lumbrine", 1, 2);
};

TEST_F(MIDIPresence, IsAnnouncedEvery120Milliseconds) {
    ASSERT_TRUE(host->start());
    host->announcePresence(3);
    runtime.runUntilIdle();
    EXPECT_EQ(resets(), 1u);
    runtime.runFor(seconds(0.12) - nanosecond);
    EXPECT_EQ(resets(), 1u);
    runtime.runFor(nanosecond);
    EXPECT_EQ(resets(), 2u);
    runtime.runFor(seconds(0.12) - nanosecond);
    EXPECT_EQ(resets(), 2u);
    runtime.runFor(nanosecond); // 0.24 s
    EXPECT_EQ(resets(), 3u);
    runtime.runFor(seconds(10));
    EXPECT_EQ(resets(), 3u);
}

TEST_F(MIDIPresence, IsAnnouncedOnceAtLeast) {
    ASSERT_TRUE(host->start());
    std::size_t expected = 0;
    for (const int times : {1, 0, -5}) {
        host->announcePresence(times);
        runtime.runFor(seconds(1));
        EXPECT_EQ(resets(), ++expected) << times;
    }
}

TEST_F(MIDIPresence, IsAnnouncedFromTheBackground) {
    ASSERT_TRUE(host->start());
    services.onReceived = [&] { EXPECT_FALSE(runtime.onMain()); };
    host->announcePresence(2);
    runtime.runFor(seconds(1));
    EXPECT_EQ(resets(), 2u);
}

TEST_F(MIDIPresence, EndsWithTheHost) {
    ASSERT_TRUE(host->start());
    host->announcePresence(3);
    runtime.runFor(seconds(0.12) - nanosecond);
    host.reset();
    runtime.runFor(seconds(1));
    EXPECT_EQ(resets(), 1u);
}

TEST_F(MIDIPresence, NeedsASourceWhenTheTimeHasCome) {
    host->announcePresence(3);
    runtime.runFor(seconds(0.06));
    ASSERT_TRUE(host->start());
    EXPECT_EQ(resets(), 0u);
    runtime.runFor(seconds(1));
    EXPECT_EQ(resets(), 2u);
}

TEST_F(MIDIPresence, IsNotAnnouncedWithoutASource) {
    services.sourceStatus = -1;
    ASSERT_FALSE(host->start());
    host->announcePresence(3);
    runtime.runFor(seconds(1));
    EXPECT_EQ(resets(), 0u);
}

} // namespace
} // namespace lumbrine
