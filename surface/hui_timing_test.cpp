#include "platform/virtual/virtual_runtime.h"
#include "surface/hui_engine.h"

#include <chrono>

namespace lumbrine {
namespace {

using std::chrono::milliseconds;

constexpr Duration instant{1};

struct Sent {
    Duration at;
    Bytes bytes;
    bool operator==(const Sent&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Sent& sent) {
    return out << sent.at.count() << " ns: " << ::testing::PrintToString(sent.bytes);
}

class HUITiming : public ::testing::Test {
protected:
    HUITiming() {
        engine->send = [this](ByteView message) {
            sent.push_back({runtime.now() - start, Bytes(message.begin(), message.end())});
        };
        engine->log = [this](const std::string& line) { lines.push_back(line); };
    }

    VirtualRuntime runtime;
    const TimePoint start = runtime.now();
    std::vector<Sent> sent;
    std::vector<std::string> lines;
    std::shared_ptr<HUIEngine> engine = std::make_shared<HUIEngine>(runtime, Bilingual(false));
};

TEST_F(HUITiming, ReleasesASwitch60MillisecondsAfterThePress) {
    const Sent zone{milliseconds(0), {0xB0, 0x0F, 0x03}};
    const Sent down{milliseconds(0), {0xB0, 0x2F, 0x42}};
    const Sent zoneAgain{milliseconds(60), {0xB0, 0x0F, 0x03}};
    const Sent up{milliseconds(60), {0xB0, 0x2F, 0x02}};

    engine->pressSwitch(3, 2);
    EXPECT_EQ(runtime.now(), start);
    EXPECT_EQ(sent, (std::vector<Sent>{zone, down}));
    runtime.runFor(milliseconds(60) - instant);
    EXPECT_EQ(sent, (std::vector<Sent>{zone, down}));
    runtime.runFor(instant);
    EXPECT_EQ(sent, (std::vector<Sent>{zone, down, zoneAgain, up}));
    runtime.runFor(milliseconds(1000));
    EXPECT_EQ(sent.size(), 4u);
    EXPECT_EQ(lines.size(), 1u);
}

TEST_F(HUITiming, ReleasesTheZoneAndPortThatWerePressed) {
    engine->pressSwitch(255, 0x1F);
    runtime.runFor(milliseconds(60));
    ASSERT_EQ(sent.size(), 4u);
    EXPECT_EQ(sent[2].bytes, (Bytes{0xB0, 0x0F, 0xFF}));
    EXPECT_EQ(sent[3].bytes, (Bytes{0xB0, 0x2F, 0x0F}));
}

TEST_F(HUITiming, ReleasesASwitchFromTheBackground) {
    std::vector<bool> fromMain;
    engine->send = [&](ByteView) { fromMain.push_back(runtime.onMain()); };
    engine->pressSwitch(0, 3);
    runtime.runFor(milliseconds(60));
    EXPECT_EQ(fromMain, (std::vector<bool>{true, true, false, false}));
}

TEST_F(HUITiming, ReleasesOverlappingPressesEachInItsTime) {
    engine->pressSwitch(1, 2);
    runtime.runFor(milliseconds(10));
    engine->pressSwitch(2, 3);
    runtime.runFor(milliseconds(100));
    EXPECT_EQ(sent, (std::vector<Sent>{{milliseconds(0), {0xB0, 0x0F, 0x01}},
                                       {milliseconds(0), {0xB0, 0x2F, 0x42}},
                                       {milliseconds(10), {0xB0, 0x0F, 0x02}},
                                       {milliseconds(10), {0xB0, 0x2F, 0x43}},
                                       {milliseconds(60), {0xB0, 0x0F, 0x01}},
                                       {milliseconds(60), {0xB0, 0x2F, 0x02}},
                                       {milliseconds(70), {0xB0, 0x0F, 0x02}},
                                       {milliseconds(70), {0xB0, 0x2F, 0x03}}}));
}

TEST_F(HUITiming, ReleasesNothingWhenTheEngineIsGone) {
    engine->pressSwitch(3, 2);
    runtime.runFor(milliseconds(60) - instant);
    engine.reset();
    runtime.runFor(milliseconds(1000));
    EXPECT_EQ(sent.size(), 2u);
}

TEST_F(HUITiming, HoldsABankButtonFor30Milliseconds) {
    engine->channelMove(3);
    EXPECT_EQ(runtime.now() - start, milliseconds(30));
    EXPECT_EQ(sent, (std::vector<Sent>{{milliseconds(0), {0xB0, 0x0F, 0x0A}},
                                       {milliseconds(0), {0xB0, 0x2F, 0x43}},
                                       {milliseconds(30), {0xB0, 0x0F, 0x0A}},
                                       {milliseconds(30), {0xB0, 0x2F, 0x03}}}));
}

TEST_F(HUITiming, PressesTheFirstBankButtonToo) {
    engine->channelMove(0);
    ASSERT_EQ(sent.size(), 4u);
    EXPECT_EQ(sent[1].bytes, (Bytes{0xB0, 0x2F, 0x40}));
    EXPECT_EQ(sent[3].bytes, (Bytes{0xB0, 0x2F, 0x00}));
}

TEST_F(HUITiming, LetsOthersSendWhileABankButtonIsHeld) {
    runtime.background(Priority::normal, [this] { engine->channelMove(1); });
    runtime.runFor(milliseconds(15));
    engine->sendFader(0, 0.0);
    EXPECT_EQ(sent.size(), 4u);
    runtime.runFor(milliseconds(15));
    EXPECT_EQ(sent.size(), 6u);
}

TEST_F(HUITiming, ResetsThePanBySendAInStepsOf60Milliseconds) {
    engine->resetPanAssignToLeft();
    EXPECT_EQ(runtime.now() - start, milliseconds(180));
    EXPECT_EQ(sent, (std::vector<Sent>{{milliseconds(0), {0xB0, 0x0F, 0x0B}},
                                       {milliseconds(0), {0xB0, 0x2F, 0x47}},
                                       {milliseconds(60), {0xB0, 0x0F, 0x0B}},
                                       {milliseconds(60), {0xB0, 0x2F, 0x07}},
                                       {milliseconds(120), {0xB0, 0x0F, 0x0B}},
                                       {milliseconds(120), {0xB0, 0x2F, 0x42}},
                                       {milliseconds(180), {0xB0, 0x0F, 0x0B}},
                                       {milliseconds(180), {0xB0, 0x2F, 0x02}}}));
}

TEST_F(HUITiming, ShowsTheLeftSideFromTheBeginningOfThePanReset) {
    engine->flipPanSide();
    runtime.background(Priority::normal, [this] { engine->resetPanAssignToLeft(); });
    runtime.runFor(instant);
    EXPECT_FALSE(engine->showsRightPan());
    runtime.runFor(milliseconds(180) - instant - instant);
    EXPECT_TRUE(lines.empty());
    runtime.runFor(instant);
    EXPECT_EQ(lines.size(), 1u);
}

} // namespace
} // namespace lumbrine
