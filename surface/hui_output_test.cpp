#include "platform/virtual/still_runtime.h"
#include "surface/testing/hui_trace.h"

#include <limits>

namespace lumbrine {
namespace {

using Messages = std::vector<Bytes>;
using Texts = std::vector<std::string>;

class HUIOutput : public ::testing::Test {
protected:
    StillRuntime runtime;
    HUIEngine engine{runtime, Bilingual(false)};
    HUITrace trace{engine};
};

TEST_F(HUIOutput, SendsAFaderHighHalfFirst) {
    engine.sendFader(0, 0.5);
    engine.sendFader(7, 0.5);
    EXPECT_EQ(trace.sent, (Messages{{0xB0, 0x00, 0x3F},
                                    {0xB0, 0x20, 0x7F}, // 8191
                                    {0xB0, 0x07, 0x3F},
                                    {0xB0, 0x27, 0x7F}}));
}

TEST_F(HUIOutput, TruncatesAFaderTo14Bits) {
    engine.sendFader(1, 0.99999); // 16382.8
    engine.sendFader(1, 1.0);
    engine.sendFader(1, 0.00006); // 0.98
    EXPECT_EQ(trace.sent, (Messages{{0xB0, 0x01, 0x7F},
                                    {0xB0, 0x21, 0x7E},
                                    {0xB0, 0x01, 0x7F},
                                    {0xB0, 0x21, 0x7F},
                                    {0xB0, 0x01, 0x00},
                                    {0xB0, 0x21, 0x00}}));
}

TEST_F(HUIOutput, ClampsAFaderToItsRange) {
    engine.sendFader(2, -0.3);
    engine.sendFader(2, 1.7);
    engine.sendFader(2, -std::numeric_limits<double>::infinity());
    engine.sendFader(2, std::numeric_limits<double>::infinity());
    const Bytes bottomHigh{0xB0, 0x02, 0x00};
    const Bytes bottomLow{0xB0, 0x22, 0x00};
    const Bytes topHigh{0xB0, 0x02, 0x7F};
    const Bytes topLow{0xB0, 0x22, 0x7F};
    EXPECT_EQ(trace.sent, (Messages{bottomHigh, bottomLow, topHigh, topLow, bottomHigh, bottomLow, topHigh, topLow}));
}

// Also shows that assertions run in what is tested.
using HUIOutputDeathTest = HUIOutput;
TEST_F(HUIOutputDeathTest, TakesNoFaderThatIsNotANumber) {
    EXPECT_DEATH(engine.sendFader(2, std::numeric_limits<double>::quiet_NaN()), "isnan");
}

TEST_F(HUIOutput, TouchesAndReleasesAFader) {
    engine.touch(5);
    engine.release(5);
    EXPECT_EQ(trace.sent, (Messages{{0xB0, 0x0F, 0x05}, {0xB0, 0x2F, 0x40}, {0xB0, 0x0F, 0x05}, {0xB0, 0x2F, 0x00}}));
}

TEST_F(HUIOutput, SendsNothingForStripsThatAreNotThere) {
    for (const int strip : {-1, 8, 16, 255}) {
        engine.sendFader(strip, 0.5);
        engine.touch(strip);
        engine.release(strip);
        engine.sendVpotDelta(strip, 1);
    }
    EXPECT_EQ(trace.sent, Messages{});
}

TEST_F(HUIOutput, SendsOneEdgeOfASwitch) {
    engine.switchEdge(0x18, 3, true);
    engine.switchEdge(0x18, 3, false);
    EXPECT_EQ(trace.sent, (Messages{{0xB0, 0x0F, 0x18}, {0xB0, 0x2F, 0x43}, {0xB0, 0x0F, 0x18}, {0xB0, 0x2F, 0x03}}));
}

TEST_F(HUIOutput, AddressesTheSwitchesOfAStripByTheirPorts) {
    const std::vector<std::pair<int, std::uint8_t>> ports{{hui::touchPort, 0x40}, {hui::selectPort, 0x41},
                                                          {hui::mutePort, 0x42},  {hui::soloPort, 0x43},
                                                          {hui::autoPort, 0x44},  {hui::recArmPort, 0x47}};
    for (const auto& [port, down] : ports) {
        engine.switchEdge(5, port, true);
        EXPECT_EQ(trace.sent.back(), (Bytes{0xB0, 0x2F, down}));
    }
}

TEST_F(HUIOutput, AddressesTheKeysBesideTheStripsByTheirZones) {
    engine.switchEdge(hui::bankZone, 0, true);
    engine.switchEdge(hui::assignZone, hui::panAssignPort, true);
    engine.switchEdge(hui::assignZone, hui::sendAAssignPort, true);
    engine.switchEdge(hui::transportZone, 4, true);
    engine.switchEdge(hui::autoModeZone, 5, true);
    EXPECT_EQ(trace.sent, (Messages{{0xB0, 0x0F, 0x0A},
                                    {0xB0, 0x2F, 0x40},
                                    {0xB0, 0x0F, 0x0B},
                                    {0xB0, 0x2F, 0x42},
                                    {0xB0, 0x0F, 0x0B},
                                    {0xB0, 0x2F, 0x47},
                                    {0xB0, 0x0F, 0x0E},
                                    {0xB0, 0x2F, 0x44},
                                    {0xB0, 0x0F, 0x18},
                                    {0xB0, 0x2F, 0x45}}));
}

TEST_F(HUIOutput, KeepsAnEdgeToSevenBitsOfZoneAndFourOfPort) {
    engine.switchEdge(0x83, 0x1F, true);
    engine.switchEdge(0x7F, 0xFF, false);
    EXPECT_EQ(trace.sent, (Messages{{0xB0, 0x0F, 0x03}, {0xB0, 0x2F, 0x4F}, {0xB0, 0x0F, 0x7F}, {0xB0, 0x2F, 0x0F}}));
}

TEST_F(HUIOutput, TurnsAVpotBySignAndMagnitude) {
    engine.sendVpotDelta(0, 1);
    engine.sendVpotDelta(7, -1);
    engine.sendVpotDelta(3, 62);
    engine.sendVpotDelta(3, -62);
    EXPECT_EQ(trace.sent, (Messages{{0xB0, 0x40, 0x41}, {0xB0, 0x47, 0x01}, {0xB0, 0x43, 0x7E}, {0xB0, 0x43, 0x3E}}));
}

TEST_F(HUIOutput, TurnsAVpotByAtMost63Clicks) {
    for (const int delta : {63, 64, 200, std::numeric_limits<int>::max()})
        engine.sendVpotDelta(1, delta);
    for (const int delta : {-63, -64, -200, std::numeric_limits<int>::min()})
        engine.sendVpotDelta(0, delta);
    const Bytes most{0xB0, 0x41, 0x7F};
    const Bytes least{0xB0, 0x40, 0x3F};
    EXPECT_EQ(trace.sent, (Messages{most, most, most, most, least, least, least, least}));
}

TEST_F(HUIOutput, SendsNothingForAVpotThatStandsStill) {
    engine.sendVpotDelta(0, 0);
    EXPECT_EQ(trace.sent, Messages{});
}

TEST_F(HUIOutput, PressesBankButtonsOnly) {
    engine.channelMove(4);
    engine.channelMove(-1);
    EXPECT_EQ(trace.sent, Messages{});
    EXPECT_EQ(runtime.now(), TimePoint{});
}

TEST_F(HUIOutput, LogsAPressWithoutBlanksBeforeTheNumbers) {
    engine.pressSwitch(11, 2);
    engine.pressSwitch(255, 15);
    EXPECT_EQ(trace.lines, (Texts{"→ switch zone11 port2 pressed", "→ switch zone255 port15 pressed"}));
}

TEST_F(HUIOutput, LogsAPressInJapanese) {
    HUIEngine japanese(runtime, Bilingual(true));
    const HUITrace said(japanese);
    japanese.pressSwitch(0, 7);
    EXPECT_EQ(said.lines, Texts{"→ switch zone0 port7 押下"});
}

TEST_F(HUIOutput, LogsAPressAfterItsMessages) {
    Texts order;
    engine.send = [&](ByteView) { order.emplace_back("sent"); };
    engine.log = [&](const std::string&) { order.emplace_back("logged"); };
    engine.pressSwitch(1, 2);
    EXPECT_EQ(order, (Texts{"sent", "sent", "logged"}));
}

TEST_F(HUIOutput, PressesAZoneAsItIs) {
    engine.pressSwitch(255, 0x1F);
    EXPECT_EQ(trace.sent, (Messages{{0xB0, 0x0F, 0xFF}, {0xB0, 0x2F, 0x4F}}));
}

TEST_F(HUIOutput, LogsThePanResetInBothLanguages) {
    engine.resetPanAssignToLeft();
    EXPECT_EQ(trace.lines, Texts{"→ pan mode force-reset to Pan Left (SEND A→PAN)"});

    HUIEngine japanese(runtime, Bilingual(true));
    const HUITrace said(japanese);
    japanese.resetPanAssignToLeft();
    EXPECT_EQ(said.lines, Texts{"→ パンモードを Pan Left へ強制リセット(SEND A→PAN)"});
}

TEST_F(HUIOutput, LogsNothingElse) {
    engine.sendFader(0, 0.1);
    engine.touch(0);
    engine.release(0);
    engine.switchEdge(0, 0, true);
    engine.channelMove(0);
    engine.sendVpotDelta(0, 1);
    EXPECT_EQ(trace.lines, Texts{});
}

TEST_F(HUIOutput, ShowsTheLeftSideOfThePanUntilItIsFlipped) {
    EXPECT_FALSE(engine.showsRightPan());
    engine.flipPanSide();
    EXPECT_TRUE(engine.showsRightPan());
    engine.flipPanSide();
    EXPECT_FALSE(engine.showsRightPan());
    EXPECT_EQ(trace.sent, Messages{});
}

TEST_F(HUIOutput, ShowsTheLeftSideAfterThePanReset) {
    engine.flipPanSide();
    engine.resetPanAssignToLeft();
    EXPECT_FALSE(engine.showsRightPan());
}

TEST_F(HUIOutput, PrintsItsLogUntilSomebodyTakesIt) {
    HUIEngine alone(runtime, Bilingual(false));
    ::testing::internal::CaptureStdout();
    alone.pressSwitch(3, 1);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "→ switch zone3 port1 pressed\n");
}

#if !defined(NDEBUG)
TEST_F(HUIOutput, TreatsNoNumberAndNoZoneAsMistakes) {
    EXPECT_DEATH(engine.sendFader(0, std::numeric_limits<double>::quiet_NaN()), "isnan");
    EXPECT_DEATH(engine.pressSwitch(256, 0), "zone");
    EXPECT_DEATH(engine.pressSwitch(-1, 0), "zone");
}
#endif

} // namespace
} // namespace lumbrine
