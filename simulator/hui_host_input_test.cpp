// The effects of surfaces: faders, switches, V-Pots, transport.
#include "simulator/simulated_hui_host.h"
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

using namespace hui_address;
using testing::ElementsAre;
using testing::IsEmpty;

const SimulatedTrack& track(const HostBench& bench, int id) {
    return *bench.session.find(id);
}

// ---- Faders

TEST(HUIHostInput, EchoesEachMoveOfATouchedFader) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.edge(0, 2, touch, true);
    bench.receive(0, {0xB0, 0x02, 0x3F, 0xB0, 0x22, 0x7F, 0xB0, 0x02, 0x40, 0xB0, 0x22, 0x05});
    EXPECT_EQ(track(bench, 3).fader.raw(), 0x40 << 7 | 0x05);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x02, 0x3F, 0xB0, 0x22, 0x7F, 0xB0, 0x02, 0x40, 0xB0, 0x22, 0x05}));
    bench.receive(0, {0xB0, 0x02, 0x40, 0xB0, 0x22, 0x05}); // the same place again
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x02, 0x40, 0xB0, 0x22, 0x05}));
    bench.edge(0, 2, touch, false);
    EXPECT_THAT(bench.take(), IsEmpty());
}

TEST(HUIHostInput, EchoesOnceAfterTheReleaseWhereTheOptionSaysSo) {
    SimulatorOptions options;
    options.faderEcho = FaderEcho::afterRelease;
    HostBench bench(numberedSession(3), options);
    bench.appear();
    bench.edge(0, 2, touch, true);
    bench.receive(0, {0xB0, 0x02, 0x3F, 0xB0, 0x22, 0x7F, 0xB0, 0x02, 0x40, 0xB0, 0x22, 0x05});
    EXPECT_EQ(track(bench, 3).fader.raw(), 0x40 << 7 | 0x05);
    EXPECT_THAT(bench.take(), IsEmpty());
    bench.edge(0, 2, touch, false);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x02, 0x40, 0xB0, 0x22, 0x05}));
}

TEST(HUIHostInput, SendsFadersWithAsManyBitsAsTheOptionSays) {
    const std::vector<std::pair<int, Bytes>> cases{
        {9, {0xB0, 0x00, 0x7F, 0xB0, 0x20, 0x60}},
        {10, {0xB0, 0x00, 0x7F, 0xB0, 0x20, 0x70}},
        {14, {0xB0, 0x00, 0x7F, 0xB0, 0x20, 0x7F}},
    };
    for (const auto& [bits, echo] : cases) {
        SimulatorOptions options;
        options.faderBits = bits;
        HostBench bench(numberedSession(1), options);
        bench.appear();
        bench.receive(0, {0xB0, 0x00, 0x7F, 0xB0, 0x20, 0x7F});
        EXPECT_EQ(bench.takeJoined(), echo) << bits << " bits";
        EXPECT_EQ(track(bench, 1).fader.raw(), 16383);
    }
}

TEST(HUIHostInput, MovesTheOtherMembersOfTheGroupOnEverySurface) {
    SimulatedSession session = numberedSession(12);
    for (const int id : {1, 3, 10})
        session.change(id, [](SimulatedTrack& member) { member.group = 1; });
    SimulatorOptions options;
    options.surfaces = 2;
    HostBench bench(session, options);
    bench.appear();
    bench.edge(0, 0, touch, true);
    bench.receive(0, {0xB0, 0x00, 0x61, 0xB0, 0x20, 0x00}); // 128 up
    EXPECT_EQ(bench.takeJoined(0), (Bytes{0xB0, 0x00, 0x61, 0xB0, 0x20, 0x00, 0xB0, 0x02, 0x61, 0xB0, 0x22, 0x00}));
    EXPECT_EQ(bench.takeJoined(1), (Bytes{0xB0, 0x01, 0x61, 0xB0, 0x21, 0x00}));
}

TEST(HUIHostInput, LetsAnotherFaderLeadTheGroupOnceTheFirstIsLetGo) {
    SimulatedSession session = numberedSession(2);
    session.changeAll([](SimulatedTrack& member) { member.group = 1; });
    HostBench bench(session);
    bench.appear();
    bench.edge(0, 0, touch, true);
    bench.edge(0, 0, touch, false);
    bench.edge(0, 1, touch, true);
    bench.receive(0, {0xB0, 0x01, 0x61, 0xB0, 0x21, 0x00});
    EXPECT_EQ(track(bench, 1).fader.high(), 0x61);
}

TEST(HUIHostInput, PutsAFaderWithoutATrackBackDown) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.edge(0, 5, touch, true);
    bench.receive(0, {0xB0, 0x05, 0x3F, 0xB0, 0x25, 0x00});
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x05, 0x00, 0xB0, 0x25, 0x00}));
    EXPECT_FALSE(bench.host.isTouched(0, 5));
}

// ---- Switches

TEST(HUIHostInput, TogglesMuteSoloAndRecordArm) {
    SimulatorOptions options;
    options.ledOn = seconds(100);
    HostBench bench(numberedSession(1), options);
    bench.appear();
    bench.press(0, 0, mute);
    EXPECT_TRUE(track(bench, 1).mute);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x42}));
    bench.press(0, 0, mute);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x02}));
    bench.press(0, 0, solo);
    EXPECT_TRUE(track(bench, 1).solo);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x43,    // SOLO
                                         0xB0, 0x0C, 0x16, 0xB0, 0x2C, 0x43})); // RUDE SOLO
    bench.press(0, 0, recordArm);
    EXPECT_TRUE(track(bench, 1).recordArmed);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x47}));
}

TEST(HUIHostInput, SelectsOneTrackAndMoreWithShiftOnAnySurface) {
    SimulatorOptions options;
    options.surfaces = 2;
    HostBench bench(numberedSession(12), options);
    bench.appear();
    bench.press(0, 0, select);
    bench.press(0, 1, select);
    EXPECT_FALSE(track(bench, 1).selected);
    EXPECT_EQ(bench.takeJoined(0), (Bytes{0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x41,    // 1 on
                                          0xB0, 0x0C, 0x00, 0xB0, 0x2C, 0x01,    // 1 off, in one burst with
                                          0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x41})); // 2 on
    bench.edge(1, keyboardZone, shift, true);
    bench.press(0, 2, select);
    bench.press(1, 1, select);
    bench.edge(1, keyboardZone, shift, false);
    EXPECT_TRUE(track(bench, 2).selected && track(bench, 3).selected && track(bench, 10).selected);
    EXPECT_EQ(bench.takeJoined(1), (Bytes{0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x41}));
    bench.press(0, 0, select);
    EXPECT_FALSE(track(bench, 2).selected || track(bench, 3).selected || track(bench, 10).selected);
}

TEST(HUIHostInput, DoesNothingOnAStripWithoutATrack) {
    HostBench bench(numberedSession(1));
    bench.appear();
    for (const int port : {select, mute, solo, automation, vSel, insert, recordArm})
        bench.press(0, 3, port);
    bench.receive(0, {0xB0, 0x43, 0x41});
    EXPECT_THAT(bench.take(), IsEmpty());
}

TEST(HUIHostInput, DropsPressesAtRandomWhereTheOptionSaysSo) {
    SimulatorOptions options;
    options.dropOnePressIn = 4;
    HostBench bench(numberedSession(1), options);
    bench.appear();
    int seen = 0;
    for (int i = 0; i < 400; ++i) {
        const bool before = track(bench, 1).mute;
        bench.press(0, 0, mute);
        seen += track(bench, 1).mute != before;
    }
    EXPECT_EQ(static_cast<std::uint64_t>(400 - seen), bench.host.droppedPresses());
    EXPECT_GT(bench.host.droppedPresses(), 60u);
    EXPECT_LT(bench.host.droppedPresses(), 140u);
}

TEST(HUIHostInput, DropsNeitherTouchesNorTheReleaseOfASwitchThatItSaw) {
    SimulatorOptions options;
    options.dropOnePressIn = 1;
    HostBench bench(numberedSession(1), options);
    bench.appear();
    bench.edge(0, 0, touch, true);
    EXPECT_TRUE(bench.host.isTouched(0, 0));
    bench.edge(0, 0, automation, true); // dropped, and so is its release
    EXPECT_EQ(bench.names().substr(0, 4), "T01 ");
    bench.edge(0, 0, automation, false);
    EXPECT_EQ(bench.host.droppedPresses(), 1u);
}

TEST(HUIHostInput, ForgetsDroppedPressesWhenTheSurfaceAppearsAgain) {
    SimulatorOptions options;
    options.dropOnePressIn = 2;
    HostBench bench(numberedSession(1), options);
    bench.appear();
    std::uint64_t seen = 0;
    for (int i = 0; i < 100; ++i) {
        const bool before = track(bench, 1).mute;
        bench.edge(0, 0, mute, true);
        seen += track(bench, 1).mute != before;
        bench.receive(0, {0xFF}); // the switch is never let go
    }
    EXPECT_EQ(seen + bench.host.droppedPresses(), 100u);
}

// ---- V-Pots

TEST(HUIHostInput, TurnsThePanByClicksAndShowsItOnTheRing) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.receive(0, {0xB0, 0x40, 0x41}); // one click: off the centre, the same position
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x10, 0x16}));
    bench.receive(0, {0xB0, 0x40, 0x48}); // nine in all: one position
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x10, 0x17}));
    bench.receive(0, {0xB0, 0x40, 0x09}); // and back
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x10, 0x56}));
    bench.receive(0, {0xB0, 0x40, 0x7F}); // as far as it goes
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x10, 0x1B}));
    bench.receive(0, {0xB0, 0x40, 0x3F, 0xB0, 0x40, 0x3F});
    EXPECT_EQ(track(bench, 1).panLeft, -100);
    bench.clear();
    bench.receive(0, {0xB0, 0x40, 0x01});
    EXPECT_THAT(bench.take(), IsEmpty()); // already at the end
}

TEST(HUIHostInput, TakesAsManyClicksForARingPositionAsTheOptionSays) {
    for (const int clicks : {1, 4, 18}) {
        SimulatorOptions options;
        options.clicksPerRingPosition = clicks;
        HostBench bench(numberedSession(1), options);
        bench.appear();
        bench.receive(0, {0xB0, 0x40, static_cast<std::uint8_t>(0x40 + clicks)});
        EXPECT_NEAR(track(bench, 1).panLeft, 20, 1e-9) << clicks;
        EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x10, 0x17})) << clicks;
    }
}

TEST(HUIHostInput, ShowsPanWithThePictureOfTheOption) {
    const std::vector<std::pair<RingPicture, std::uint8_t>> cases{{RingPicture::dot, 0x46},
                                                                  {RingPicture::boostCut, 0x56},
                                                                  {RingPicture::wrap, 0x66},
                                                                  {RingPicture::spread, 0x76}};
    for (const auto& [picture, byte] : cases) {
        SimulatorOptions options;
        options.panPicture = picture;
        HostBench bench(numberedSession(1), options);
        EXPECT_EQ(bench.host.picture(0).rings[0], byte);
        EXPECT_EQ(bench.host.picture(0).rings[1], 0); // no track
        EXPECT_EQ(bench.host.picture(0).rings[8], 0); // a parameter pot
    }
}

TEST(HUIHostInput, SwitchesBetweenTheSidesOfStereoTracksWithEachPressOfPan) {
    SimulatedSession session = numberedSession(2);
    session.change(1, [](SimulatedTrack& stereo) {
        stereo.stereo = true;
        stereo.panLeft = -100;
        stereo.panRight = 100;
    });
    session.change(2, [](SimulatedTrack& mono) { mono.panLeft = 40; });
    HostBench bench(session);
    bench.appear();
    EXPECT_EQ(bench.host.picture(0).rings[0], 0x11);
    bench.press(0, assignZone, pan);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x10, 0x1B})); // the mono track's pan stays
    bench.receive(0, {0xB0, 0x40, 0x09, 0xB0, 0x41, 0x09});
    EXPECT_NEAR(track(bench, 1).panRight, 80, 1e-9);
    EXPECT_EQ(track(bench, 1).panLeft, -100);
    EXPECT_NEAR(track(bench, 2).panLeft, 20, 1e-9);
    bench.press(0, assignZone, pan);
    EXPECT_FALSE(bench.host.showsRightPan(0));
}

TEST(HUIHostInput, ReturnsToTheLeftSideByWayOfASend) {
    HostBench bench(numberedSession(2));
    bench.appear();
    for (const bool right : {false, true}) {
        if (bench.host.showsRightPan(0) != right) bench.press(0, assignZone, pan);
        bench.press(0, assignZone, sendA);
        EXPECT_EQ(bench.host.picture(0).rings[0], 0); // the tracks have no sends
        bench.receive(0, {0xB0, 0x40, 0x45});
        EXPECT_EQ(track(bench, 1).panLeft, 0);
        bench.press(0, assignZone, pan);
        EXPECT_FALSE(bench.host.showsRightPan(0));
    }
}

TEST(HUIHostInput, AssignsEachSurfaceByItself) {
    SimulatorOptions options;
    options.surfaces = 2;
    HostBench bench(numberedSession(12), options);
    bench.appear();
    bench.press(1, assignZone, pan);
    EXPECT_FALSE(bench.host.showsRightPan(0));
    EXPECT_TRUE(bench.host.showsRightPan(1));
}

TEST(HUIHostInput, ShowsTheAssignmentInItsDisplayAndLEDs) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.press(0, assignZone, sendA);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x08, 'S', 'n', 'd', 'A', 0xF7, //
                                         0xB0, 0x10, 0x00,                      // ring dark
                                         0xB0, 0x0C, 0x0B, 0xB0, 0x2C, 0x02,    // PAN off
                                         0xB0, 0x0C, 0x0B, 0xB0, 0x2C, 0x47})); // SEND A on
}

// ---- Transport

TEST(HUIHostInput, PlaysRecordsAndStops) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.press(0, transportZone, play);
    EXPECT_TRUE(bench.session.transport().playing);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x0E, 0xB0, 0x2C, 0x03, 0xB0, 0x0C, 0x0E, 0xB0, 0x2C, 0x44}));
    bench.press(0, transportZone, record);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x0E, 0xB0, 0x2C, 0x45}));
    bench.press(0, transportZone, stop);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x0E, 0xB0, 0x2C, 0x43, 0xB0, 0x0C, 0x0E, 0xB0, 0x2C, 0x04, 0xB0,
                                         0x0C, 0x0E, 0xB0, 0x2C, 0x05}));
}

TEST(HUIHostInput, MovesThePlayPosition) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.press(0, transportZone, fastForward);
    bench.press(0, transportZone, fastForward);
    bench.press(0, transportZone, rewind);
    EXPECT_EQ(bench.session.transport().position, seconds(5));
    bench.receive(0, {0xB0, 0x0D, 0x42});
    EXPECT_EQ(bench.session.transport().position, seconds(5.2));
    bench.press(0, transport2Zone, toEnd);
    EXPECT_EQ(bench.session.transport().position, seconds(240));
    bench.clear();
    bench.press(0, transport2Zone, returnToZero);
    EXPECT_EQ(bench.takeJoined(), // 00:04:00:00 becomes zero: the counter up to its fifth digit
              (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x11, 0, 0, 0x10, 0, 0x10, 0xF7}));
}

TEST(HUIHostInput, LightsOnLineLoopAndQuickPunch) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.press(0, transport2Zone, onLine);
    bench.press(0, transport2Zone, loop);
    bench.press(0, transport2Zone, quickPunch);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x0F, 0xB0, 0x2C, 0x42, 0xB0, 0x0C, 0x0F, 0xB0, 0x2C, 0x43, 0xB0,
                                         0x0C, 0x0F, 0xB0, 0x2C, 0x44}));
}

} // namespace
} // namespace lumbrine
