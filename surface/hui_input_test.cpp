#include "platform/virtual/still_runtime.h"
#include "surface/testing/hui_trace.h"

namespace lumbrine {
namespace {

using Texts = std::vector<std::string>;

class HUIInput : public ::testing::Test {
protected:
    void receive(const Bytes& packet) { engine.handleIncoming(packet); }

    StillRuntime runtime;
    HUIEngine engine{runtime, Bilingual(false)};
    HUITrace trace{engine};
};

TEST_F(HUIInput, AnswersAPingAndNotesItsTime) {
    EXPECT_EQ(engine.lastPingAt, std::nullopt);
    runtime.time = TimePoint{seconds(12.5)};
    receive({0x90, 0x00, 0x00});
    EXPECT_EQ(trace.sent, (std::vector<Bytes>{{0x90, 0x00, 0x7F}}));
    EXPECT_EQ(engine.pingCount, 1);
    EXPECT_EQ(engine.lastPingAt, TimePoint{seconds(12.5)});
    EXPECT_EQ(trace.events, Texts{});
}

TEST_F(HUIInput, AnswersEveryPingOfAPacket) {
    receive({0x90, 0x00, 0x00, 0x90, 0x00, 0x00});
    EXPECT_EQ(trace.sent, (std::vector<Bytes>{{0x90, 0x00, 0x7F}, {0x90, 0x00, 0x7F}}));
    EXPECT_EQ(engine.pingCount, 2);
}

TEST_F(HUIInput, RepliesBeforeItLogsThePing) {
    Texts order;
    engine.send = [&](ByteView) { order.emplace_back("reply"); };
    engine.log = [&](const std::string&) { order.emplace_back("log of " + std::to_string(engine.pingCount)); };
    receive({0x90, 0x00, 0x00});
    EXPECT_EQ(order, (Texts{"reply", "log of 1"}));
}

// As it arrives where the host's MIDI has passed through other software.
TEST_F(HUIInput, AnswersAPingThatHasBecomeANoteOff) {
    receive({0x80, 0x00, 0x40});
    receive({0x80, 0x00, 0x00});
    EXPECT_EQ(trace.sent, (std::vector<Bytes>{{0x90, 0x00, 0x7F}, {0x90, 0x00, 0x7F}}));
    EXPECT_EQ(engine.pingCount, 2);
}

TEST_F(HUIInput, IgnoresNotesThatAreNoPing) {
    receive({0x90, 0x00, 0x7F}); // another surface's answer
    receive({0x90, 0x00, 0x01});
    receive({0x90, 0x01, 0x00});
    receive({0x80, 0x01, 0x00});
    receive({0x91, 0x00, 0x00});
    EXPECT_TRUE(trace.sent.empty());
    EXPECT_EQ(engine.pingCount, 0);
    EXPECT_EQ(engine.lastPingAt, std::nullopt);
}

TEST_F(HUIInput, LogsTheFirstPingAndEveryTenth) {
    for (int i = 0; i < 21; ++i)
        receive({0x90, 0x00, 0x00});
    EXPECT_EQ(trace.lines, (Texts{"♥ ping #1 received → replied (connection alive)",
                                  "♥ ping #10 received → replied (connection alive)",
                                  "♥ ping #20 received → replied (connection alive)"}));
    EXPECT_EQ(engine.pingCount, 21);
}

TEST_F(HUIInput, LogsPingsInJapanese) {
    HUIEngine japanese(runtime, Bilingual(true));
    const HUITrace said(japanese);
    japanese.handleIncoming(Bytes{0x90, 0x00, 0x00});
    EXPECT_EQ(said.lines, Texts{"♥ ping #1 受信 → 応答 (接続維持中)"});
}

TEST_F(HUIInput, ReadsAMeterAsStripSideAndLevel) {
    receive({0xA0, 0x00, 0x0C});
    receive({0xA0, 0x07, 0x1F});
    receive({0xA0, 0x03, 0x6A}); // the bits above the side mean nothing
    receive({0xA0, 0x04, 0x00});
    EXPECT_EQ(trace.events, (Texts{"meter 0 left 12", "meter 7 right 15", "meter 3 left 10", "meter 4 left 0"}));
}

TEST_F(HUIInput, LooksOnlyAtTheLowNibbleForAMetersStrip) {
    receive({0xA0, 0x10, 0x01});
    receive({0xA0, 0x17, 0x02});
    receive({0xA0, 0x75, 0x03});
    EXPECT_EQ(trace.events, (Texts{"meter 0 left 1", "meter 7 left 2", "meter 5 left 3"}));
}

TEST_F(HUIInput, IgnoresMetersBeyondTheEighth) {
    receive({0xA0, 0x08, 0x05});
    receive({0xA0, 0x0F, 0x05});
    receive({0xA0, 0x18, 0x05});
    EXPECT_EQ(trace.events, Texts{});
}

TEST_F(HUIInput, PairsTheHalvesOfAFader) {
    receive({0xB0, 0x00, 0x3F, 0xB0, 0x20, 0x7F});
    receive({0xB0, 0x07, 0x01, 0xB0, 0x27, 0x02});
    EXPECT_EQ(trace.events, (Texts{"fader 0 at 8191", "fader 7 at 130"}));
}

TEST_F(HUIInput, ReportsNothingForTheHighHalfAlone) {
    receive({0xB0, 0x03, 0x55});
    EXPECT_EQ(trace.events, Texts{});
    EXPECT_EQ(trace.lines, Texts{});
}

TEST_F(HUIInput, ReachesExactlyBothEndsOfAFader) {
    std::vector<double> values;
    engine.onFaderFeedback = [&](int, double value) { values.push_back(value); };
    receive({0xB0, 0x02, 0x7F, 0xB0, 0x22, 0x7F});
    receive({0xB0, 0x02, 0x00, 0xB0, 0x22, 0x00});
    EXPECT_EQ(values, (std::vector<double>{1.0, 0.0}));
}

TEST_F(HUIInput, TakesAMissingHighHalfAsZero) {
    std::vector<double> values;
    engine.onFaderFeedback = [&](int, double value) { values.push_back(value); };
    receive({0xB0, 0x24, 0x40});
    EXPECT_EQ(values, std::vector<double>{64 / 16383.0});
}

TEST_F(HUIInput, ReusesAStripsLastHighHalf) {
    receive({0xB0, 0x01, 0x02, 0xB0, 0x21, 0x00});
    receive({0xB0, 0x05, 0x7F});                   // another strip's
    receive({0xB0, 0x21, 0x05, 0xB0, 0x21, 0x06}); // low halves alone
    EXPECT_EQ(trace.events, (Texts{"fader 1 at 256", "fader 1 at 261", "fader 1 at 262"}));
}

TEST_F(HUIInput, LogsAFaderThatNobodyListensTo) {
    engine.onFaderFeedback = nullptr;
    receive({0xB0, 0x03, 0x3F, 0xB0, 0x23, 0x7F});
    receive({0xB0, 0x07, 0x7F, 0xB0, 0x27, 0x7F});
    receive({0xB0, 0x20, 0x10}); // 0.000977
    EXPECT_EQ(trace.lines, (Texts{"← PT fader 3 = 0.500", "← PT fader 7 = 1.000", "← PT fader 0 = 0.001"}));
}

TEST_F(HUIInput, ReportsALedOfTheSelectedZone) {
    receive({0xB0, 0x0C, 0x03, 0xB0, 0x2C, 0x42}); // the one pair of controllers
    receive({0xB0, 0x0F, 0x18, 0xB0, 0x2F, 0x05}); // the other
    EXPECT_EQ(trace.events, (Texts{"led 3/2 on", "led 24/5 off"}));
}

TEST_F(HUIInput, TakesThePortFromTheLowNibbleAndTheStateFromBitSix) {
    receive({0xB0, 0x0C, 0x00});
    receive({0xB0, 0x2C, 0x7F});
    receive({0xB0, 0x2C, 0x3F});
    EXPECT_EQ(trace.events, (Texts{"led 0/15 on", "led 0/15 off"}));
}

TEST_F(HUIInput, ReportsTheColourOfAnAutoLedBesideItsState) {
    std::vector<std::pair<int, AutoLedColour>> colours;
    engine.onAutoLed = [&](int strip, AutoLedColour colour) { colours.emplace_back(strip, colour); };
    engine.handleIncoming(Bytes{0xB0, 0x0C, 0x05, 0x2C, 0x04, 0x2C, 0x24, 0x2C, 0x34, 0x2C, 0x64, 0x2C, 0x44});
    engine.handleIncoming(Bytes{0xB0, 0x2C, 0x42, 0x0C, 0x08, 0x2C, 0x64});
    using enum AutoLedColour;
    EXPECT_EQ(colours,
              (std::vector<std::pair<int, AutoLedColour>>{{5, dark}, {5, green}, {5, green}, {5, orange}, {5, red}}));
    EXPECT_EQ(trace.events.size(), 7u);
}

TEST_F(HUIInput, KeepsTheZoneForLaterPorts) {
    receive({0xB0, 0x0C, 0x0A});
    receive({0xB0, 0x2C, 0x40, 0xB0, 0x2F, 0x41});
    EXPECT_EQ(trace.events, (Texts{"led 10/0 on", "led 10/1 on"}));
}

TEST_F(HUIInput, IgnoresLedsBeforeTheFirstZone) {
    receive({0xB0, 0x2C, 0x42, 0xB0, 0x2F, 0x42});
    EXPECT_EQ(trace.events, Texts{});
    EXPECT_EQ(trace.lines, Texts{});
}

TEST_F(HUIInput, ReadsAVpotRing) {
    receive({0xB0, 0x10, 0x4B});
    receive({0xB0, 0x17, 0x36});
    EXPECT_EQ(trace.events, (Texts{"vpot 0 at 11 centre left", "vpot 7 at 6 left"}));
}

TEST_F(HUIInput, ReportsWhichSideOfThePanARingShows) {
    engine.flipPanSide();
    receive({0xB0, 0x12, 0x01});
    engine.flipPanSide();
    receive({0xB0, 0x12, 0x01});
    EXPECT_EQ(trace.events, (Texts{"vpot 2 at 1 right", "vpot 2 at 1 left"}));
}

TEST_F(HUIInput, LogsAnUnknownControllerOnce) {
    receive({0xB0, 0x7A, 0x05});
    receive({0xB0, 0x7A, 0x06});
    receive({0xB0, 0x08, 0x6B});
    receive({0xB0, 0x7F, 0x00});
    EXPECT_EQ(trace.lines, (Texts{"← unknown CC 0x7A (val 0x05) first seen", "← unknown CC 0x08 (val 0x6B) first seen",
                                  "← unknown CC 0x7F (val 0x00) first seen"}));
    EXPECT_EQ(trace.events, Texts{});
}

TEST_F(HUIInput, LogsAnUnknownControllerInJapanese) {
    HUIEngine japanese(runtime, Bilingual(true));
    const HUITrace said(japanese);
    japanese.handleIncoming(Bytes{0xB0, 0x2E, 0x0C});
    EXPECT_EQ(said.lines, Texts{"← 未知CC 0x2E (val 0x0C) 初出"});
}

TEST_F(HUIInput, LogsNoMoreThan24UnknownControllers) {
    for (std::uint8_t controller = 0x40; controller < 0x40 + 23; ++controller)
        receive({0xB0, controller, 0x00});
    EXPECT_EQ(trace.lines.size(), 23u);
    receive({0xB0, 0x57, 0x00});
    EXPECT_EQ(trace.lines.size(), 24u);
    EXPECT_EQ(trace.lines.back(), "← unknown CC 0x57 (val 0x00) first seen");
    receive({0xB0, 0x58, 0x00});
    receive({0xB0, 0x40, 0x00});
    EXPECT_EQ(trace.lines.size(), 24u);
}

TEST_F(HUIInput, KnowsExactlyTheControllersOfTheProtocol) {
    for (int controller = 0; controller < 128; ++controller) {
        const bool inGroup =
            controller < 0x08 || (controller >= 0x10 && controller < 0x18) || (controller >= 0x20 && controller < 0x28);
        const bool zoneOrPort = controller == 0x0C || controller == 0x0F || controller == 0x2C || controller == 0x2F;
        HUIEngine fresh(runtime, Bilingual(false));
        const HUITrace said(fresh);
        fresh.handleIncoming(Bytes{0xB0, static_cast<std::uint8_t>(controller), 0x01});
        EXPECT_EQ(said.lines.empty(), inGroup || zoneOrPort) << controller;
    }
}

TEST_F(HUIInput, DecodesWithNobodyListening) {
    engine.onTrackName = nullptr;
    engine.onMeter = nullptr;
    engine.onLed = nullptr;
    engine.onVpot = nullptr;
    engine.onSelectAssign = nullptr;
    receive({0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 0x4B, 0x69, 0x63, 0x6B, 0xF7});
    receive({0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x08, 0x4B, 0x69, 0x63, 0x6B, 0xF7});
    receive({0xA0, 0x00, 0x01, 0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x40, 0xB0, 0x10, 0x01, 0x90, 0x00, 0x00});
    EXPECT_EQ(trace.sent.size(), 1u);
}

} // namespace
} // namespace lumbrine
