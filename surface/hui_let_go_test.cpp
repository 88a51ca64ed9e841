#include "platform/virtual/virtual_runtime.h"
#include "surface/testing/hui_trace.h"

namespace lumbrine {
namespace {

using std::chrono::milliseconds;
using Messages = std::vector<Bytes>;

Messages released(std::uint8_t zone, std::uint8_t port) {
    return {{0xB0, 0x0F, zone}, {0xB0, 0x2F, port}};
}

Messages operator+(Messages left, const Messages& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

class HUILetGo : public ::testing::Test {
protected:
    // What has been sent since the last call.
    Messages sent() { return std::exchange(trace.sent, {}); }

    VirtualRuntime runtime;
    std::shared_ptr<HUIEngine> engine = std::make_shared<HUIEngine>(runtime, Bilingual(false));
    HUITrace trace{*engine};
};

TEST_F(HUILetGo, KnowsWhatIsDown) {
    EXPECT_FALSE(engine->isDown(3, hui::touchPort));
    engine->touch(3);
    EXPECT_TRUE(engine->isDown(3, hui::touchPort));
    EXPECT_FALSE(engine->isDown(3, hui::mutePort));
    EXPECT_FALSE(engine->isDown(4, hui::touchPort));
    engine->release(3);
    EXPECT_FALSE(engine->isDown(3, hui::touchPort));

    engine->switchEdge(hui::autoModeZone, 5, true);
    EXPECT_TRUE(engine->isDown(hui::autoModeZone, 5));
    engine->switchEdge(hui::autoModeZone, 5, false);
    EXPECT_FALSE(engine->isDown(hui::autoModeZone, 5));

    engine->pressSwitch(2, hui::mutePort);
    EXPECT_TRUE(engine->isDown(2, hui::mutePort));
    runtime.runFor(milliseconds(60));
    EXPECT_FALSE(engine->isDown(2, hui::mutePort));

    runtime.background(Priority::normal, [this] { engine->channelMove(1); });
    runtime.runFor(milliseconds(29));
    EXPECT_TRUE(engine->isDown(hui::bankZone, 1));
    runtime.runFor(milliseconds(1));
    EXPECT_FALSE(engine->isDown(hui::bankZone, 1));
}

TEST_F(HUILetGo, SendsNothingWhenNothingIsDown) {
    engine->letGo();
    engine->touch(1);
    engine->release(1);
    sent();
    engine->letGo();
    EXPECT_EQ(sent(), Messages{});
}

TEST_F(HUILetGo, ReleasesEverythingInTheOrderOfZonesAndPorts) {
    engine->switchEdge(hui::autoModeZone, 1, true);
    engine->switchEdge(5, hui::autoPort, true);
    engine->pressSwitch(5, hui::mutePort);
    engine->touch(7);
    engine->touch(0);
    engine->pressSwitch(255, 15);
    sent();
    engine->letGo();
    EXPECT_EQ(sent(), released(0, 0) + released(5, 2) + released(5, 4) + released(7, 0) + released(0x18, 1) +
                          released(0xFF, 15));
    EXPECT_FALSE(engine->isDown(7, hui::touchPort));
    EXPECT_FALSE(engine->isDown(255, 15));
    engine->letGo();
    EXPECT_EQ(sent(), Messages{});
}

TEST_F(HUILetGo, LeavesNothingToReleaseToTheTimeOfAPress) {
    engine->pressSwitch(2, hui::mutePort);
    runtime.runFor(milliseconds(20));
    sent();
    engine->letGo();
    EXPECT_EQ(sent(), released(2, 2));
    runtime.runFor(milliseconds(1000));
    EXPECT_EQ(sent(), Messages{});
}

TEST_F(HUILetGo, DoesNotCutANewPressShort) {
    engine->pressSwitch(2, hui::mutePort);
    runtime.runFor(milliseconds(20));
    engine->letGo();
    engine->pressSwitch(2, hui::mutePort);
    sent();
    runtime.runFor(milliseconds(59));
    EXPECT_EQ(sent(), Messages{});
    runtime.runFor(milliseconds(1));
    EXPECT_EQ(sent(), released(2, 2));
}

TEST_F(HUILetGo, LeavesNothingToReleaseToABankButton) {
    runtime.background(Priority::normal, [this] { engine->channelMove(3); });
    runtime.runFor(milliseconds(10));
    sent();
    engine->letGo();
    EXPECT_EQ(sent(), released(0x0A, 3));
    runtime.runFor(milliseconds(100));
    EXPECT_EQ(sent(), Messages{});
}

TEST_F(HUILetGo, LetsThePanResetGoOnWithItsNextKey) {
    runtime.background(Priority::normal, [this] { engine->resetPanAssignToLeft(); });
    runtime.runFor(milliseconds(30));
    sent();
    engine->letGo();
    EXPECT_EQ(sent(), released(0x0B, 7));
    runtime.runFor(milliseconds(200));
    EXPECT_EQ(sent(), (Messages{{0xB0, 0x0F, 0x0B}, {0xB0, 0x2F, 0x42}} + released(0x0B, 2)));
}

TEST_F(HUILetGo, ReleasesAPressOnceThoughTheSwitchWasPressedTwice) {
    engine->pressSwitch(2, hui::mutePort);
    runtime.runFor(milliseconds(30));
    engine->pressSwitch(2, hui::mutePort);
    sent();
    engine->letGo();
    EXPECT_EQ(sent(), released(2, 2));
    runtime.runFor(milliseconds(1000));
    EXPECT_EQ(sent(), Messages{});
}

// While the ports were lost, the host may have missed any release. It listens again when it pings.
TEST_F(HUILetGo, ReleasesWhatWasDownAtTheFirstPingAfterTheReturnOfThePorts) {
    const Bytes ping{0x90, 0x00, 0x00};
    const Messages answer{{0x90, 0x00, 0x7F}};
    engine->touch(6);
    engine->touch(1);
    engine->release(1);
    sent();
    engine->portsAreBack();
    EXPECT_EQ(sent(), Messages{});
    engine->pressSwitch(2, hui::mutePort);
    sent();
    engine->handleIncoming(ping);
    EXPECT_EQ(sent(), answer + released(1, 0) + released(2, 2) + released(6, 0));
    EXPECT_FALSE(engine->isDown(6, hui::touchPort));
    runtime.runFor(milliseconds(1000));
    engine->handleIncoming(ping);
    EXPECT_EQ(sent(), answer);

    engine->touch(3);
    engine->portsAreBack();
    sent();
    engine->handleIncoming(ping);
    EXPECT_EQ(sent(), answer + released(3, 0));
}

TEST_F(HUILetGo, LetsTheOwnerReleaseAgain) {
    engine->touch(1);
    engine->letGo();
    sent();
    engine->release(1);
    EXPECT_EQ(sent(), released(1, 0));
}

TEST_F(HUILetGo, ForGoodSendsNoEdgeAfterwards) {
    engine->touch(1);
    engine->pressSwitch(2, hui::mutePort);
    sent();
    engine->letGoForGood();
    EXPECT_EQ(sent(), released(1, 0) + released(2, 2));

    engine->touch(1);
    engine->release(1);
    engine->switchEdge(1, hui::autoPort, true);
    engine->switchEdge(1, hui::autoPort, false);
    engine->pressSwitch(3, hui::soloPort);
    engine->channelMove(0);
    engine->resetPanAssignToLeft();
    runtime.runFor(milliseconds(1000));
    engine->letGoForGood();
    EXPECT_EQ(sent(), Messages{});
    EXPECT_FALSE(engine->isDown(1, hui::touchPort));
}

TEST_F(HUILetGo, ForGoodGoesOnAnsweringPings) {
    engine->letGoForGood();
    engine->handleIncoming(Bytes{0x90, 0x00, 0x00});
    EXPECT_EQ(sent(), (Messages{{0x90, 0x00, 0x7F}}));
}

} // namespace
} // namespace lumbrine
