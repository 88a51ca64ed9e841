#include "simulator/simulator_options.h"

namespace lumbrine {
namespace {

using Spoil = std::function<void(SimulatorOptions&)>;

TEST(SimulatorOptions, HaveNoProblemAsTheyCome) {
    EXPECT_EQ(problemWith(SimulatorOptions{}), std::nullopt);
}

TEST(SimulatorOptions, RefuseWhatCannotBe) {
    const std::vector<Spoil> spoilers{
        [](auto& options) { options.surfaces = 0; },
        [](auto& options) { options.surfaces = 3; },
        [](auto& options) { options.pingInterval = Duration::zero(); },
        [](auto& options) { options.pingJitter = -seconds(1); },
        [](auto& options) { options.latePingOneIn = -1; },
        [](auto& options) { options.latePing = -seconds(1); },
        [](auto& options) { options.packets.messagesPerPacket = 0; },
        [](auto& options) { options.hostTimeout = Duration::zero(); },
        [](auto& options) { options.latency = -seconds(1); },
        [](auto& options) { options.faderBits = 12; },
        [](auto& options) { options.displaysPerSysEx = 0; },
        [](auto& options) { options.displaysPerSysEx = 10; },
        [](auto& options) { options.modeShown = -seconds(1); },
        [](auto& options) { options.valueShownFor = Duration::zero(); },
        [](auto& options) { options.mostClicks = 0; },
        [](auto& options) { options.mostClicks = 64; },
        [](auto& options) { options.ledOn = Duration::zero(); },
        [](auto& options) { options.ledOff = Duration::zero(); },
        [](auto& options) { options.clicksPerRingPosition = 0; },
        [](auto& options) { options.meterRate = 0; },
        [](auto& options) { options.meterRate = 101; },
        [](auto& options) { options.sessionOpensAfter = -seconds(1); },
        [](auto& options) { options.grabPortsAfter = -seconds(1); },
        [](auto& options) { options.dropOnePressIn = -1; },
        [](auto& options) { options.restlessUserEvery = -seconds(1); },
        [](auto& options) { options.scripting.pageLimit = 0; },
        [](auto& options) { options.scripting.version = 0; },
        [](auto& options) { options.scripting.version = 6; },
        [](auto& options) { options.scripting.miscount = 1001; },
        [](auto& options) { options.scripting.miscount = -1001; },
        [](auto& options) { options.scripting.commandTime = -seconds(1); },
        [](auto& options) { options.scripting.readyAfter = -seconds(1); },
        [](auto& options) { options.scripting.busyOneIn = -1; },
        [](auto& options) { options.scripting.busyBurst = 0; },
        [](auto& options) { options.scripting.stallOneIn = -1; },
        [](auto& options) { options.scripting.stallTime = Duration::zero(); },
        [](auto& options) { options.scripting.resetOneIn = -1; },
        [](auto& options) { options.scripting.goAwayOneIn = -1; },
        [](auto& options) { options.scripting.dieOneIn = -1; },
        [](auto& options) { options.scripting.downTime = -seconds(1); },
        [](auto& options) { options.dumpOrder.pop_back(); },
        [](auto& options) { options.dumpOrder.push_back(DumpPart::ping); },
        [](auto& options) { options.dumpOrder[0] = DumpPart::faders; },
    };
    for (std::size_t i = 0; i < spoilers.size(); ++i) {
        SimulatorOptions options;
        spoilers[i](options);
        EXPECT_NE(problemWith(options), std::nullopt) << "number " << i;
    }
}

TEST(SimulatorOptions, NeedAFaultyWireForItsFaultsAlone) {
    EXPECT_FALSE(needFaultyWire({}));
    EXPECT_FALSE(needFaultyWire({.busyOneIn = 3, .stallOneIn = 3}));
    EXPECT_TRUE(needFaultyWire({.resetOneIn = 1}));
    EXPECT_TRUE(needFaultyWire({.goAwayOneIn = 1}));
    EXPECT_TRUE(needFaultyWire({.dieOneIn = 1}));
    EXPECT_TRUE(needFaultyWire({.bytesAtOnce = 1}));
    EXPECT_TRUE(needFaultyWire({.faultyWire = true}));
}

} // namespace
} // namespace lumbrine
