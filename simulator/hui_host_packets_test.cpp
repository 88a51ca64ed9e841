// Unusual pings and packets of a host: late pings, packed messages, a SysEx without its end.
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

using testing::Contains;
using testing::Not;

// The times of the pings within this time from the start.
std::vector<Duration> pingTimes(const SimulatorOptions& options, Duration time) {
    HostBench bench(numberedSession(1), options);
    std::vector<Duration> times;
    const TimePoint end = bench.now + time;
    while (bench.now < end) {
        bench.runFor(seconds(0.01));
        for (const Bytes& packet : bench.take())
            if (packet == ping) times.push_back(bench.now.time_since_epoch());
    }
    return times;
}

TEST(HUIHostPackets, PingsComeLateWithinTheJitterAndNoPingIsLost) {
    SimulatorOptions options;
    options.pingJitter = seconds(0.3);
    const std::vector<Duration> times = pingTimes(options, seconds(20.5));
    ASSERT_EQ(times.size(), 21u);
    bool someAreLate = false;
    for (std::size_t i = 0; i < times.size(); ++i) {
        const Duration late = times[i] - seconds(1) * static_cast<int>(i);
        EXPECT_GE(late, Duration::zero());
        EXPECT_LE(late, seconds(0.31));
        someAreLate = someAreLate || late > seconds(0.1);
    }
    EXPECT_TRUE(someAreLate);
}

TEST(HUIHostPackets, SomePingsAreLateByTheTimeThatIsChosen) {
    SimulatorOptions options;
    options.latePingOneIn = 4;
    options.latePing = seconds(0.8);
    const std::vector<Duration> times = pingTimes(options, seconds(40));
    int late = 0;
    for (std::size_t i = 0; i < times.size(); ++i)
        if (times[i] - seconds(1) * static_cast<int>(i) > seconds(0.7)) ++late;
    EXPECT_GT(late, 3);
    EXPECT_LT(late, 20);
}

TEST(HUIHostPackets, ArePackedWithThePingAtTheEndOfWhatIsDueWithIt) {
    SimulatorOptions options;
    options.packets.messagesPerPacket = 100;
    HostBench bench(numberedSession(1), options);
    bench.appear();
    bench.receive(0, {0xFF});
    const std::vector<Bytes> dump = bench.take();
    ASSERT_FALSE(dump.empty());
    EXPECT_THAT(dump, Not(Contains(ping)));
    EXPECT_EQ(std::ranges::count_if(dump,
                                    [](const Bytes& packet) {
                                        return packet.size() > 3 && Bytes(packet.end() - 3, packet.end()) == ping;
                                    }),
              1);
}

TEST(HUIHostPackets, LoseTheEndOfASysExWhenThePortsGoOrTheSurfaceIsCutOff) {
    SimulatorOptions options;
    options.packets.cutSysEx = true;
    for (const bool portsGo : {true, false}) {
        HostBench bench(numberedSession(1), options);
        bench.appear();
        if (portsGo) {
            bench.host.holdPorts(false);
        } else {
            bench.host.cut(0, true);
        }
        bench.runFor(Duration::zero());
        EXPECT_THAT(bench.take(), Contains(PacketMaker::cutSysEx()));
    }
}

TEST(HUIHostPackets, LoseNothingOfASysExThatNobodyIsSent) {
    SimulatorOptions options;
    options.packets.cutSysEx = true;
    HostBench bench(numberedSession(1), options);
    bench.host.holdPorts(false);
    bench.runFor(Duration::zero());
    EXPECT_THAT(bench.take(), Not(Contains(PacketMaker::cutSysEx())));
}

} // namespace
} // namespace lumbrine
