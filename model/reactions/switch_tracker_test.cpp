// Steady and flashing mute, solo and record LEDs, as the client sees them.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

constexpr int mutePort = 2;
constexpr int soloPort = 3;
constexpr int recPort = 7;

class SwitchTrackerTest : public OwnedModelTest {
protected:
    void led(int strip, int port, bool on) {
        (strip < 8 ? bench.surfaceA : bench.surfaceB).led(strip % 8, port, on);
        settle();
    }

    // Mute, solo and record of a strip, as a full message says them now: "2 0 1".
    std::string shown(int strip) {
        settle();
        phone->tape.clear();
        bench.parts().mirror.sendAllSwitches();
        settle();
        const std::string message = phone->tape.takeBytes().back();
        std::string lights;
        for (std::size_t i = 0; i < 3; ++i)
            lights += (i == 0 ? "" : " ") + message.substr(7 + static_cast<std::size_t>(strip) * 9 + i * 3, 1);
        return lights;
    }
};

TEST_F(SwitchTrackerTest, ASteadyLedIsShownAtOnce) {
    led(0, mutePort, true);
    EXPECT_THAT(heard(0x13),
                ElementsAre("0ms 01 13 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
    EXPECT_TRUE(bench.model->published().strips[0].mute.rawOn);
    led(0, mutePort, false);
    EXPECT_EQ(shown(0), "0 0 0");
    EXPECT_FALSE(bench.model->published().strips[0].mute.rawOn);
}

TEST_F(SwitchTrackerTest, TheSameStateAgainSendsNothing) {
    led(0, recPort, true);
    phone->tape.clear();
    led(0, recPort, true);
    EXPECT_THAT(heard(0x13), IsEmpty());
}

TEST_F(SwitchTrackerTest, TheThirdQuickEdgeMakesAMuteBlinkFor1200Milliseconds) {
    led(3, mutePort, true);
    bench.run(500ms);
    led(3, mutePort, false);
    EXPECT_EQ(shown(3), "0 0 0");
    bench.run(500ms);
    led(3, mutePort, true);
    EXPECT_EQ(shown(3), "2 0 0");
    bench.run(1199ms);
    EXPECT_EQ(shown(3), "2 0 0");
    bench.run(1ms);
    EXPECT_EQ(shown(3), "1 0 0");
}

TEST_F(SwitchTrackerTest, AMuteThatGoesOffBlinksFor1200MillisecondsToo) {
    for (const bool on : {true, false, true, false})
        led(3, mutePort, on);
    bench.run(1199ms);
    EXPECT_EQ(shown(3), "2 0 0");
    bench.run(1ms);
    EXPECT_EQ(shown(3), "0 0 0");
}

TEST_F(SwitchTrackerTest, TheSameStateAgainIsNoEdge) {
    led(0, mutePort, true);
    led(0, mutePort, true);
    led(0, mutePort, false);
    EXPECT_EQ(shown(0), "0 0 0"); // the second edge
    bench.run(1499ms);
    led(0, mutePort, false);
    bench.run(1ms);
    led(0, mutePort, true); // 1500 ms after it
    EXPECT_EQ(shown(0), "1 0 0");
}

TEST_F(SwitchTrackerTest, EdgesAreQuickBelow1500Milliseconds) {
    led(0, mutePort, true);
    bench.run(1499ms);
    led(0, mutePort, false);
    bench.run(1499ms);
    led(0, mutePort, true);
    EXPECT_EQ(shown(0), "2 0 0");
}

TEST_F(SwitchTrackerTest, EdgesAreSlowFrom1500Milliseconds) {
    led(0, mutePort, true);
    bench.run(1499ms);
    led(0, mutePort, false);
    bench.run(1500ms);
    led(0, mutePort, true);
    EXPECT_EQ(shown(0), "1 0 0");
    bench.run(1499ms);
    led(0, mutePort, false);
    EXPECT_EQ(shown(0), "0 0 0");
}

TEST_F(SwitchTrackerTest, ARecordLedThatGoesOffBlinksFor400Milliseconds) {
    led(1, recPort, true);
    led(1, recPort, false);
    led(1, recPort, true);
    EXPECT_EQ(shown(1), "0 0 2");
    bench.run(250ms);
    led(1, recPort, false);
    bench.run(399ms);
    EXPECT_EQ(shown(1), "0 0 2");
    bench.run(1ms);
    EXPECT_EQ(shown(1), "0 0 0");
}

TEST_F(SwitchTrackerTest, ARecordLedThatGoesOnBlinksFor1200Milliseconds) {
    led(1, recPort, true);
    led(1, recPort, false);
    led(1, recPort, true);
    bench.run(1199ms);
    EXPECT_EQ(shown(1), "0 0 2");
    bench.run(1ms);
    EXPECT_EQ(shown(1), "0 0 1");
}

TEST_F(SwitchTrackerTest, TheEndOfABlinkIsShownAtTheNextTick) {
    led(0, mutePort, true);
    led(0, mutePort, false);
    led(0, mutePort, true);
    bench.run(1199ms);
    phone->tape.clear();
    bench.run(201ms); // a tick every 400 ms, the last one at 1400
    EXPECT_THAT(heard(0x13), testing::Contains(testing::StartsWith("1400ms 01 13 01 00 00")));
}

TEST_F(SwitchTrackerTest, ASoloIsShownAndLogged) {
    led(11, soloPort, true);
    EXPECT_TRUE(bench.model->published().strips[11].solo);
    led(11, soloPort, true);
    led(11, soloPort, false);
    EXPECT_THAT(bench.takeLines(), ElementsAre("← LED ch12 solo ON", "← LED ch12 solo off"));
    EXPECT_FALSE(bench.model->published().strips[11].solo);
}

TEST_F(SwitchTrackerTest, SolosAndRecordLedsAreShownAtOnce) {
    led(0, soloPort, true);
    EXPECT_THAT(heard(0x13),
                ElementsAre("0ms 01 13 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
    led(0, recPort, true);
    EXPECT_THAT(heard(0x13),
                ElementsAre("0ms 01 13 00 01 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
}

TEST_F(SwitchTrackerTest, ASoloIsNeverBlinking) {
    for (const bool on : {true, false, true})
        led(0, soloPort, on);
    EXPECT_EQ(shown(0), "0 1 0");
}

TEST_F(SwitchTrackerTest, TheLastSoloTakesTheMuteBlinksWithIt) {
    led(0, soloPort, true);
    for (const bool on : {true, false, true})
        led(4, mutePort, on);
    led(5, mutePort, true); // muted by the user: steady
    EXPECT_EQ(shown(4), "2 0 0");
    led(0, soloPort, false);
    EXPECT_EQ(shown(4), "0 0 0");
    EXPECT_EQ(shown(5), "1 0 0");
}

TEST_F(SwitchTrackerTest, TheLastSoloTakesTheMuteBlinksOfBothSurfaces) {
    bench.state().published.winW = 16; // until the next tick
    led(9, soloPort, true);
    for (const int strip : {0, 15})
        for (const bool on : {true, false, true})
            led(strip, mutePort, on);
    led(9, soloPort, false);
    EXPECT_EQ(shown(0), "0 0 0");
    EXPECT_EQ(shown(15), "0 0 0");
    EXPECT_FALSE(bench.model->published().strips[15].mute.rawOn);
}

TEST_F(SwitchTrackerTest, TheLastSoloLeavesTheRecordBlinks) {
    led(0, soloPort, true);
    for (const bool on : {true, false, true})
        led(4, recPort, on);
    led(0, soloPort, false);
    EXPECT_EQ(shown(4), "0 0 2");
}

TEST_F(SwitchTrackerTest, AMuteThatBlinksNoLongerStaysAsItIs) {
    led(0, soloPort, true);
    for (const bool on : {true, false, true})
        led(4, mutePort, on);
    bench.run(1200ms);
    led(0, soloPort, false);
    EXPECT_EQ(shown(4), "1 0 0");
}

TEST_F(SwitchTrackerTest, AnotherSoloKeepsTheMuteBlinks) {
    led(0, soloPort, true);
    led(15, soloPort, true);
    for (const bool on : {true, false, true})
        led(4, mutePort, on);
    led(0, soloPort, false);
    EXPECT_EQ(shown(4), "2 0 0");
}

TEST_F(SwitchTrackerTest, ClearedBlinksNeedThreeQuickEdgesAgain) {
    led(0, soloPort, true);
    for (const bool on : {true, false, true})
        led(4, mutePort, on);
    led(0, soloPort, false);
    led(4, mutePort, true);
    EXPECT_EQ(shown(4), "1 0 0");
    led(4, mutePort, false);
    EXPECT_EQ(shown(4), "2 0 0");
}

TEST_F(SwitchTrackerTest, ChangesAreHeldBackWhileTheBanksMove) {
    bench.state().published.banksUsedBy = BankUser::seek;
    led(0, mutePort, true);
    led(1, soloPort, true);
    led(2, recPort, true);
    EXPECT_THAT(heard(0x13), IsEmpty());
}

} // namespace
} // namespace lumbrine
