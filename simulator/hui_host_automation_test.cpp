// Automation modes: either order of holding, what the displays show, and for how long.
#include "simulator/simulated_hui_host.h"
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

using namespace hui_address;
using Automation = SimulatedTrack::Automation;
using testing::Contains;
using testing::Not;

const Bytes readMarkState{0xB0, 0x2C, 0x24};

std::string display(const HostBench& bench, int strip) {
    return bench.names().substr(static_cast<std::size_t>(strip) * 4, 4);
}

TEST(HUIHostAutomation, ShowsTheModeWhileTheAutoSwitchIsHeld) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.edge(0, 1, automation, true);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x01, 'R', 'e', 'a', 'd', 0xF7}));
    bench.runFor(seconds(0.9)); // however long it is held
    bench.clear();
    bench.edge(0, 1, automation, false);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x01, 'T', '0', '2', ' ', 0xF7}));
}

TEST(HUIHostAutomation, NamesEachModeWithAndWithoutTrim) {
    const std::vector<std::tuple<Automation, std::string, std::string>> names{{Automation::read, "Read", "TRd "},
                                                                              {Automation::touch, "Tch ", "TTch"},
                                                                              {Automation::latch, "Ltch", "TLch"},
                                                                              {Automation::write, "Wrt ", "TWrt"},
                                                                              {Automation::off, "Off ", "Off "}};
    for (const auto& [mode, plain, trimmed] : names) {
        SimulatedTrack track;
        track.automation = mode;
        const DisplayText shown = automationText(track);
        EXPECT_EQ(std::string(shown.begin(), shown.end()), plain);
        track.trim = true;
        const DisplayText shownWithTrim = automationText(track);
        EXPECT_EQ(std::string(shownWithTrim.begin(), shownWithTrim.end()), trimmed);
    }
}

TEST(HUIHostAutomation, SetsTheModeWithTheAutoSwitchHeldFirst) {
    const std::vector<std::pair<int, Automation>> keys{{latch, Automation::latch},
                                                       {off, Automation::off},
                                                       {write, Automation::write},
                                                       {touchMode, Automation::touch},
                                                       {read, Automation::read}};
    HostBench bench(numberedSession(3));
    bench.appear();
    for (const auto& [key, mode] : keys) {
        bench.edge(0, 1, automation, true);
        bench.press(0, autoModeZone, key);
        bench.edge(0, 1, automation, false);
        EXPECT_EQ(bench.session.find(2)->automation, mode);
    }
    EXPECT_EQ(bench.session.find(1)->automation, Automation::read);
}

TEST(HUIHostAutomation, SetsTheModeWithTheModeKeyHeldFirst) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.edge(0, autoModeZone, latch, true);
    bench.press(0, 0, automation);
    bench.press(0, 2, automation);
    bench.edge(0, autoModeZone, latch, false);
    bench.press(0, 1, automation);
    EXPECT_EQ(bench.session.find(1)->automation, Automation::latch);
    EXPECT_EQ(bench.session.find(2)->automation, Automation::read);
    EXPECT_EQ(bench.session.find(3)->automation, Automation::latch);
}

TEST(HUIHostAutomation, LetsGoOfModeKeysWhenTheSurfaceAppearsAnew) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.edge(0, autoModeZone, latch, true);
    bench.receive(0, {0xFF});
    bench.press(0, 0, automation);
    EXPECT_EQ(bench.session.find(1)->automation, Automation::read);
}

TEST(HUIHostAutomation, ChangesNothingWithoutAnAutoSwitch) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.press(0, autoModeZone, write);
    bench.edge(0, keyboardZone, option, true);
    bench.press(0, autoModeZone, write);
    for (const SimulatedTrack& track : bench.session.tracks())
        EXPECT_EQ(track.automation, Automation::read);
}

TEST(HUIHostAutomation, SetsEveryTrackWithOptionHeldInEitherOrder) {
    SimulatedSession session = numberedSession(20);
    session.setHidden(15, true);
    HostBench bench(session);
    bench.appear();
    bench.edge(0, keyboardZone, option, true);
    bench.edge(0, 1, automation, true);
    bench.press(0, autoModeZone, touchMode);
    bench.edge(0, 1, automation, false);
    for (const SimulatedTrack& track : bench.session.tracks())
        EXPECT_EQ(track.automation, Automation::touch) << track.name;

    bench.edge(0, autoModeZone, off, true);
    bench.press(0, 1, automation);
    for (const SimulatedTrack& track : bench.session.tracks())
        EXPECT_EQ(track.automation, Automation::off) << track.name;
    bench.edge(0, autoModeZone, off, false);

    bench.edge(0, keyboardZone, option, false);
    bench.edge(0, autoModeZone, write, true);
    bench.press(0, 1, automation);
    EXPECT_EQ(bench.session.find(2)->automation, Automation::write);
    EXPECT_EQ(bench.session.find(1)->automation, Automation::off);
}

TEST(HUIHostAutomation, TurnsTrimOverOnceForEachTrackEvenWithSeveralSwitchesAndOption) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.edge(0, keyboardZone, option, true);
    bench.edge(0, 0, automation, true);
    bench.edge(0, 1, automation, true);
    bench.press(0, autoModeZone, trim);
    for (const SimulatedTrack& track : bench.session.tracks())
        EXPECT_TRUE(track.trim);
    EXPECT_EQ(display(bench, 0), "TRd ");
}

TEST(HUIHostAutomation, ShowsTheNewModeWhileTheSwitchIsStillHeld) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.edge(0, 1, automation, true);
    bench.clear();
    bench.edge(0, autoModeZone, touchMode, true);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x01, 'T', 'c', 'h', ' ', 0xF7, //
                                         0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x44})); // lit
}

TEST(HUIHostAutomation, ShowsANewModeForAMomentAlsoWhenItWasChosenOnTheScreen) {
    SimulatorOptions options;
    options.modeShown = seconds(0.8);
    HostBench bench(numberedSession(3), options);
    bench.appear();
    bench.edit([](SimulatedSession& session) {
        session.change(2, [](SimulatedTrack& track) { track.automation = Automation::latch; });
    });
    EXPECT_EQ(display(bench, 1), "Ltch");
    bench.clear();
    bench.runFor(seconds(0.799));
    EXPECT_EQ(display(bench, 1), "Ltch");
    bench.runFor(seconds(0.001));
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x01, 'T', '0', '2', ' ', 0xF7}));
}

TEST(HUIHostAutomation, ShowsNoMomentWhenTheOptionIsZero) {
    SimulatorOptions options;
    options.modeShown = Duration::zero();
    HostBench bench(numberedSession(3), options);
    bench.appear();
    bench.edit([](SimulatedSession& session) {
        session.change(2, [](SimulatedTrack& track) { track.automation = Automation::latch; });
    });
    EXPECT_EQ(display(bench, 1), "T02 ");
}

TEST(HUIHostAutomation, MarksATrackThatGoesToRead) {
    HostBench bench(numberedSession(3));
    bench.appear();
    const auto choose = [&bench](Automation mode) {
        bench.clear();
        bench.edit([mode](SimulatedSession& session) {
            session.change(2, [mode](SimulatedTrack& track) { track.automation = mode; });
        });
        return bench.take();
    };
    EXPECT_THAT(choose(Automation::touch), Not(Contains(readMarkState)));
    const std::vector<Bytes> sent = choose(Automation::read);
    ASSERT_GE(sent.size(), 2u);
    EXPECT_EQ(sent[sent.size() - 2], (Bytes{0xB0, 0x2C, 0x04})); // the LED goes out
    EXPECT_EQ(sent.back(), readMarkState);                       // in the same zone
}

TEST(HUIHostAutomation, LightsTheLEDOfTracksThatWriteAutomation) {
    HostBench bench(numberedSession(1));
    for (const auto& [mode, lit] : std::vector<std::pair<Automation, bool>>{{Automation::read, false},
                                                                            {Automation::touch, true},
                                                                            {Automation::latch, true},
                                                                            {Automation::write, true},
                                                                            {Automation::off, false}}) {
        bench.session.change(1, [mode](SimulatedTrack& track) { track.automation = mode; });
        EXPECT_EQ(bench.host.picture(0).leds[ledIndex(0, automation)], lit);
    }
}

} // namespace
} // namespace lumbrine
