#include "base/testing/allocation_count.h"
#include "platform/virtual/still_runtime.h"
#include "surface/hui_engine.h"

namespace lumbrine {
namespace {

class HUIAllocation : public ::testing::Test {
protected:
    HUIAllocation() {
        engine.send = [this](ByteView) { ++calls; };
        engine.log = [](const std::string&) {};
        engine.onFaderFeedback = [this](int, double) { ++calls; };
        engine.onTrackName = [this](int, std::string_view) { ++calls; };
        engine.onMeter = [this](int, int, int) { ++calls; };
        engine.onLed = [this](int, int, bool) { ++calls; };
        engine.onVpot = [this](int, int, bool, bool) { ++calls; };
    }

    StillRuntime runtime;
    HUIEngine engine{runtime, Bilingual(false)};
    int calls = 0;
};

TEST_F(HUIAllocation, IsSeenByThisTest) {
    const int before = allocationCount();
    const Bytes some(100);
    EXPECT_EQ(allocationCount(), before + 1);
}

TEST_F(HUIAllocation, DecodesVoiceMessagesWithoutOne) {
    const Bytes packet{0xB0, 0x00, 0x3F, 0xB0, 0x20, 0x7F, // fader
                       0xA0, 0x01, 0x0C,                   // meter
                       0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x42, // LED
                       0xB0, 0x13, 0x0B,                   // V-Pot
                       0x90, 0x00, 0x00};                  // ping
    engine.handleIncoming(packet);                         // the first ping is logged
    const int before = allocationCount();
    engine.handleIncoming(packet);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(calls, 10);
}

TEST_F(HUIAllocation, PutsASplitSysexMessageTogetherWithoutOne) {
    const Bytes first{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 0x4B, 0x69, 0x63, 0x6B};
    const Bytes filler(1012, 0x20);
    Bytes last(256, 0x20);
    last.back() = 0xF7;
    const int before = allocationCount();
    engine.handleIncoming(first);
    engine.handleIncoming(filler);
    engine.handleIncoming(last);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(calls, 1);
}

TEST_F(HUIAllocation, SendsWithoutOne) {
    const int before = allocationCount();
    engine.sendFader(3, 0.7);
    engine.touch(3);
    engine.release(3);
    engine.switchEdge(24, 1, true);
    engine.sendVpotDelta(3, -2);
    engine.channelMove(1);
    engine.letGo(); // of the switch that is still down
    EXPECT_FALSE(engine.isDown(24, 1));
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(calls, 15);
}

} // namespace
} // namespace lumbrine
