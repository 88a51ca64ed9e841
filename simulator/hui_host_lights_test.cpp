// What changes with time alone: flashing LEDs, meters and the counter.
#include "simulator/simulated_hui_host.h"
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

using namespace hui_address;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

// ---- Flashing

TEST(HUIHostLights, FlashTheMutesOfTheOthersWhileSomethingIsSoloed) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.edit([](SimulatedSession& session) { session.change(3, [](SimulatedTrack& track) { track.mute = true; }); });
    bench.clear();
    bench.edit([](SimulatedSession& session) { session.change(1, [](SimulatedTrack& track) { track.solo = true; }); });
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x43,    // 1 is soloed
                                         0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x42,    // 2 flashes; 3 is muted and lit already
                                         0xB0, 0x0C, 0x16, 0xB0, 0x2C, 0x43})); // RUDE SOLO
    bench.live(seconds(0.499));
    EXPECT_THAT(bench.take(), IsEmpty());
    bench.live(seconds(0.001));
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x02, 0xB0, 0x0C, 0x16, 0xB0, 0x2C, 0x03}));
    bench.live(seconds(0.5));
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x42, 0xB0, 0x0C, 0x16, 0xB0, 0x2C, 0x43}));
    bench.edit([](SimulatedSession& session) { session.change(1, [](SimulatedTrack& track) { track.solo = false; }); });
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x03, 0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x02, 0xB0,
                                         0x0C, 0x16, 0xB0, 0x2C, 0x03}));
    bench.live(seconds(2));
    EXPECT_THAT(bench.take(), IsEmpty());
}

TEST(HUIHostLights, FlashAtTheRateOfTheOptions) {
    SimulatorOptions options;
    options.ledOn = seconds(0.3);
    options.ledOff = seconds(0.1);
    HostBench bench(numberedSession(1), options);
    bench.appear();
    bench.press(0, 0, recordArm);
    bench.clear();
    bench.live(seconds(0.3));
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x07}));
    bench.live(seconds(0.099));
    EXPECT_THAT(bench.take(), IsEmpty());
    bench.live(seconds(0.001));
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x47}));
}

TEST(HUIHostLights, FlashRecordArmUntilTheTransportRecords) {
    SimulatorOptions options;
    options.mainDisplay = options.counter = false;
    HostBench bench(numberedSession(1), options);
    bench.appear();
    bench.press(0, 0, recordArm);
    bench.live(seconds(0.6));
    bench.clear();
    bench.press(0, transportZone, play); // not recording yet: it goes on flashing
    bench.live(seconds(0.4));
    EXPECT_THAT(bench.take(), Contains(Bytes{0xB0, 0x2C, 0x47}));
    bench.live(seconds(0.6));
    EXPECT_THAT(bench.take(), Contains(Bytes{0xB0, 0x2C, 0x07}));
    bench.press(0, transportZone, record);
    EXPECT_THAT(bench.take(), Contains(Bytes{0xB0, 0x2C, 0x47})); // steady from here
    bench.live(seconds(3));
    EXPECT_THAT(bench.take(), IsEmpty());
}

TEST(HUIHostLights, FlashTheRecordButtonWhileItIsReady) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.press(0, transportZone, record);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x0E, 0xB0, 0x2C, 0x45}));
    bench.live(seconds(0.5));
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x0E, 0xB0, 0x2C, 0x05}));
}

// ---- Meters

SimulatedSession tones() {
    SimulatedSession session = numberedSession(2);
    const SimulatedTrack::MeterProgram tone{SimulatedTrack::MeterProgram::Kind::tone, -20, 1};
    session.change(1, [&](SimulatedTrack& track) { track.meter = tone; });
    session.change(2, [&](SimulatedTrack& track) {
        track.meter = tone;
        track.stereo = true;
    });
    return session;
}

SimulatorOptions withoutCounter() {
    SimulatorOptions options;
    options.counter = false;
    return options;
}

TEST(HUIHostLights, SendMetersAtTheirRateWhilePlayingAndDarkOnceAtTheEnd) {
    HostBench bench(tones(), withoutCounter());
    bench.appear();
    bench.press(0, transportZone, play);
    bench.clear();
    bench.live(seconds(0.039));
    EXPECT_THAT(bench.take(), IsEmpty());
    bench.live(seconds(0.001));
    const std::vector<Bytes> tick{{0xA0, 0x00, 0x05}, {0xA0, 0x01, 0x05}, {0xA0, 0x01, 0x15}};
    EXPECT_EQ(bench.take(), tick); // a mono track has no right side
    bench.live(seconds(0.96));
    EXPECT_EQ(bench.take().size(), 24u * tick.size());
    bench.press(0, transportZone, stop);
    bench.runFor(Duration::zero());
    std::vector<Bytes> end = bench.take();
    std::erase_if(end, [](const Bytes& packet) { return packet[0] != 0xA0; });
    EXPECT_THAT(end, ElementsAre(Bytes{0xA0, 0x00, 0x00}, Bytes{0xA0, 0x01, 0x00}, Bytes{0xA0, 0x01, 0x10}));
    bench.live(seconds(2));
    EXPECT_THAT(bench.take(), IsEmpty());
}

TEST(HUIHostLights, SendMetersAsOftenAsTheOptionSays) {
    for (const int rate : {20, 30}) {
        SimulatorOptions options = withoutCounter();
        options.meterRate = rate;
        HostBench bench(tones(), options);
        bench.appear();
        bench.press(0, transportZone, play);
        bench.clear();
        bench.live(seconds(1.0005));
        EXPECT_EQ(bench.take().size(), 3u * static_cast<unsigned>(rate));
    }
}

TEST(HUIHostLights, SendNoLevelOfASilencedTrack) {
    HostBench bench(tones(), withoutCounter());
    bench.appear();
    bench.press(0, transportZone, play);
    bench.live(seconds(0.05));
    bench.press(0, 0, mute);
    bench.clear();
    bench.live(seconds(0.04));
    EXPECT_THAT(bench.take(), ElementsAre(Bytes{0xA0, 0x00, 0x00}, Bytes{0xA0, 0x01, 0x05}, Bytes{0xA0, 0x01, 0x15}));
    bench.press(0, 0, mute);
    bench.press(0, 0, solo);
    bench.live(seconds(0.04));
    EXPECT_THAT(bench.take(), Contains(Bytes{0xA0, 0x01, 0x10})); // implied
}

TEST(HUIHostLights, FollowTheBankWithTheMeters) {
    SimulatedSession session = tones();
    for (int i = 0; i < 8; ++i)
        session.add({});
    HostBench bench(session, withoutCounter());
    bench.appear();
    bench.press(0, transportZone, play);
    bench.live(seconds(0.04));
    bench.press(0, bankZone, 2);
    bench.clear();
    bench.live(seconds(0.04));
    EXPECT_THAT(bench.take(), ElementsAre(Bytes{0xA0, 0x00, 0x05}, Bytes{0xA0, 0x00, 0x15}, // the stereo track
                                          Bytes{0xA0, 0x01, 0x00}, Bytes{0xA0, 0x01, 0x10}));
}

// ---- Counter and main display

TEST(HUIHostLights, CountFramesFromTheRightAsFarAsTheyChange) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.press(0, transportZone, play);
    bench.clear();
    bench.live(seconds(0.04));
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x11, 1, 0xF7}));
    bench.live(seconds(0.92));
    bench.clear();
    bench.live(seconds(0.04)); // 00:00:00:24 becomes 00:00:01:00
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x11, 0, 0, 0x11, 0xF7}));
}

TEST(HUIHostLights, ShowTheNameOfTheSessionInTheMainDisplay) {
    HostBench bench(SimulatedSession("Evening Light", {}));
    bench.appear();
    bench.receive(0, {0xFF});
    std::vector<Bytes> sent = bench.take();
    std::erase_if(sent, [](const Bytes& packet) { return packet.size() < 7 || packet[6] != 0x12; });
    ASSERT_EQ(sent.size(), 8u);
    EXPECT_EQ(sent[0], (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x12, 0, 'E', 'v', 'e', 'n', 'i', 'n', 'g', ' ', 'L',
                              'i', 0xF7}));
    EXPECT_EQ(sent[1], (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x12, 1, 'g', 'h', 't', ' ', ' ', ' ', ' ', ' ', ' ',
                              ' ', 0xF7}));
}

} // namespace
} // namespace lumbrine
