// Automation modes: both orders of pressing, and what the displays show for how long.
#include "simulator/simulated_hui_host.h"
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

using namespace hui_address;
using Automation = SimulatedTrack::Automation;
using testing::ElementsAre;
using testing::IsEmpty;

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
    const std::vector<std::tuple<Automation, std::string, std::string>> names{
        {Automation::read, "Read", "TRd "},  {Automation::touch, "Tch ", "TTch"},
        {Automation::latch, "Ltch", "TLch"}, {Automation::write, "Wrt ", "TWrt"},
        {Automation::off, "Off ", "Off "},   {Automation::touchLatch, "T/L ", "TT/L"}};
    for (const auto& [mode, plain, trimmed] : names) {
        SimulatedTrack track;
        track.automation = mode;
        const DisplayText shown = automationText(track, TrimWords::prefixed);
        EXPECT_EQ(std::string(shown.begin(), shown.end()), plain);
        track.trim = true;
        const DisplayText shownWithTrim = automationText(track, TrimWords::prefixed);
        EXPECT_EQ(std::string(shownWithTrim.begin(), shownWithTrim.end()), trimmed);
    }
}

TEST(HUIHostAutomation, CanNameTrimWithoutTheMode) {
    SimulatedTrack track;
    track.trim = true;
    EXPECT_EQ(automationText(track, TrimWords::alone), (DisplayText{'T', 'r', 'i', 'm'}));
    track.trim = false;
    EXPECT_EQ(automationText(track, TrimWords::alone), (DisplayText{'R', 'e', 'a', 'd'}));
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

TEST(HUIHostAutomation, ReleasesModeKeysWhenTheSurfaceAppearsAgain) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.edge(0, autoModeZone, latch, true);
    bench.receive(0, {0xFF});
    bench.press(0, 0, automation);
    EXPECT_EQ(bench.session.find(1)->automation, Automation::read);
}

TEST(HUIHostAutomation, ChangesNothingWithAModeKeyAlone) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.press(0, autoModeZone, write);
    for (const SimulatedTrack& track : bench.session.tracks())
        EXPECT_EQ(track.automation, Automation::read);
}

TEST(HUIHostAutomation, SetsEveryTrackWithOptionAndAModeKey) {
    SimulatedSession session = numberedSession(20);
    session.setHidden(15, true);
    HostBench bench(session);
    bench.appear();
    bench.edge(0, keyboardZone, option, true);
    bench.press(0, autoModeZone, touchMode);
    for (const SimulatedTrack& track : bench.session.tracks())
        EXPECT_EQ(track.automation, Automation::touch) << track.name;
}

TEST(HUIHostAutomation, SetsEveryTrackWithOptionAndAnAutoSwitchInEitherOrder) {
    HostBench bench(numberedSession(20));
    bench.appear();
    bench.edge(0, autoModeZone, off, true);
    bench.edge(0, keyboardZone, option, true);
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

TEST(HUIHostAutomation, SetsTheSelectedTracksWithOptionAndShift) {
    SimulatedSession session = numberedSession(20);
    session.select(3, false);
    session.select(18, true);
    HostBench bench(session);
    bench.appear();
    bench.edge(0, keyboardZone, option, true);
    bench.edge(0, keyboardZone, shift, true);
    bench.press(0, autoModeZone, latch);
    for (const SimulatedTrack& track : bench.session.tracks())
        EXPECT_EQ(track.automation, track.selected ? Automation::latch : Automation::read) << track.name;
}

// Tracks 1 and 3 are a group.
SimulatedSession sessionWithAGroup() {
    SimulatedSession session = numberedSession(3);
    for (const int id : {1, 3})
        session.change(id, [](SimulatedTrack& track) { track.group = 1; });
    return session;
}

std::vector<Automation> modesAfterLatchOnTheFirst(HostBench& bench) {
    bench.edge(0, 0, automation, true);
    bench.press(0, autoModeZone, latch);
    std::vector<Automation> modes;
    for (const SimulatedTrack& track : bench.session.tracks())
        modes.push_back(track.automation);
    return modes;
}

TEST(HUIHostAutomation, SetsTheGroupOfTheTrack) {
    HostBench bench(sessionWithAGroup());
    bench.appear();
    EXPECT_THAT(modesAfterLatchOnTheFirst(bench), ElementsAre(Automation::latch, Automation::read, Automation::latch));
}

TEST(HUIHostAutomation, SetsTheTrackAloneWithClutchOrWithoutGroups) {
    HostBench held(sessionWithAGroup());
    held.appear();
    held.edge(0, keyboardZone, clutch, true);
    EXPECT_THAT(modesAfterLatchOnTheFirst(held), ElementsAre(Automation::latch, Automation::read, Automation::read));

    SimulatorOptions options;
    options.groups = false;
    HostBench without(sessionWithAGroup(), options);
    without.appear();
    EXPECT_THAT(modesAfterLatchOnTheFirst(without), ElementsAre(Automation::latch, Automation::read, Automation::read));
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
                                         0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x64})); // orange
}

TEST(HUIHostAutomation, ShowsANewModeForAMomentAlsoWhenItWasChosenOnTheScreen) {
    SimulatorOptions options;
    options.modeShown = seconds(0.8);
    HostBench bench(numberedSession(3), options);
    bench.appear();
    bench.edit([](SimulatedSession& session) {
        session.change(2, [](SimulatedTrack& track) { track.automation = Automation::off; });
    });
    EXPECT_EQ(display(bench, 1), "Off ");
    bench.clear();
    bench.runFor(seconds(0.799));
    EXPECT_EQ(display(bench, 1), "Off ");
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

// ---- The LED of the AUTO switch

// The values sent to the LED of strip 1 when its track changes to this mode.
std::vector<Bytes> ledSentFor(HostBench& bench, Automation mode, bool trim = false) {
    bench.clear();
    bench.edit([&](SimulatedSession& session) {
        session.change(2, [&](SimulatedTrack& track) {
            track.automation = mode;
            track.trim = trim;
        });
    });
    std::vector<Bytes> sent = bench.take();
    std::erase_if(sent, [](const Bytes& packet) { return packet[1] != 0x2C || (packet[2] & 0x0F) != automation; });
    return sent;
}

TEST(HUIHostAutomation, ShowsTheModeByTheColourOfTheLED) {
    HostBench bench(numberedSession(3));
    bench.appear();
    EXPECT_THAT(ledSentFor(bench, Automation::touch), ElementsAre(Bytes{0xB0, 0x2C, 0x64}));
    EXPECT_THAT(ledSentFor(bench, Automation::write), ElementsAre(Bytes{0xB0, 0x2C, 0x44}));
    EXPECT_THAT(ledSentFor(bench, Automation::latch), ElementsAre(Bytes{0xB0, 0x2C, 0x64}));
    EXPECT_THAT(ledSentFor(bench, Automation::touchLatch), IsEmpty()); // the same colour
    EXPECT_THAT(ledSentFor(bench, Automation::off), ElementsAre(Bytes{0xB0, 0x2C, 0x04}));
    EXPECT_THAT(ledSentFor(bench, Automation::read), ElementsAre(Bytes{0xB0, 0x2C, 0x24}));
}

TEST(HUIHostAutomation, HasTheOtherGreenWhereTheOptionSaysSo) {
    SimulatorOptions options;
    options.autoLED = AutoLED::green34;
    HostBench bench(numberedSession(3), options);
    bench.appear();
    ledSentFor(bench, Automation::off);
    EXPECT_THAT(ledSentFor(bench, Automation::read), ElementsAre(Bytes{0xB0, 0x2C, 0x34}));
}

TEST(HUIHostAutomation, KeepsTheLEDDarkWhereTheOptionSaysSo) {
    SimulatorOptions options;
    options.autoLED = AutoLED::unlit;
    HostBench bench(numberedSession(3), options);
    bench.appear();
    for (const Automation mode : {Automation::off, Automation::touch, Automation::write, Automation::read})
        EXPECT_THAT(ledSentFor(bench, mode), IsEmpty());
}

TEST(HUIHostAutomation, FlashesTheLEDOfATrackThatCanWrite) {
    SimulatorOptions options;
    options.modeShown = Duration::zero();
    HostBench bench(numberedSession(3), options);
    bench.appear();
    ledSentFor(bench, Automation::write);
    bench.clear();
    bench.live(seconds(0.5));
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x04}));
    bench.live(seconds(0.5));
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x0C, 0x01, 0xB0, 0x2C, 0x44}));
}

TEST(HUIHostAutomation, FlashesInTwoColoursWithTrim) {
    SimulatorOptions options;
    options.modeShown = Duration::zero();
    HostBench bench(numberedSession(3), options);
    bench.appear();
    ledSentFor(bench, Automation::touch, true);
    bench.clear();
    bench.live(seconds(0.5));
    EXPECT_EQ(bench.takeJoined().back(), 0x24);
    bench.live(seconds(0.5));
    EXPECT_EQ(bench.takeJoined().back(), 0x64);
}

} // namespace
} // namespace lumbrine
