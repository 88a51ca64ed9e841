// The options of the host: the meaning of a reset, when a surface is filled, and the behaviour of untouched faders,
// values, clips and the counter.
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

using namespace hui_address;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const Bytes resetByte{0xFF};

std::string displayOf(const HostBench& bench, int strip) {
    return bench.names().substr(static_cast<std::size_t>(strip) * 4, 4);
}

// ---- Presence

TEST(HUIHostChoices, TakeAResetForAGoodbyeUntilTheNextReply) {
    SimulatorOptions options;
    options.resetIsGoodbye = true;
    HostBench bench(numberedSession(3), options);
    bench.appear();
    bench.receive(0, resetByte);
    EXPECT_FALSE(bench.host.port(0).answering());
    EXPECT_THAT(bench.take(), ElementsAre(ping));
    bench.receive(0, reply);
    EXPECT_TRUE(bench.host.port(0).answering());
    EXPECT_FALSE(bench.take().empty());
}

TEST(HUIHostChoices, FillASurfaceThatAnswersOnlyAtItsReset) {
    SimulatorOptions options;
    options.fill = Fill::reset;
    HostBench bench(numberedSession(3), options);
    bench.runFor(Duration::zero());
    bench.clear();
    bench.receive(0, reply);
    EXPECT_THAT(bench.take(), IsEmpty());
    bench.receive(0, resetByte);
    EXPECT_GT(bench.take().size(), 100u);
}

TEST(HUIHostChoices, FillASurfaceThatComesBackAfterItsGoodbyeByAReset) {
    SimulatorOptions options;
    options.fill = Fill::reset;
    options.resetIsGoodbye = true;
    HostBench bench(numberedSession(3), options);
    bench.runFor(Duration::zero());
    bench.receive(0, reply);
    bench.clear();
    bench.receive(0, resetByte);
    EXPECT_THAT(bench.take(), ElementsAre(ping));
    bench.receive(0, reply);
    EXPECT_GT(bench.take().size(), 100u);
}

TEST(HUIHostChoices, FillASurfaceOnlyWhenASessionOpensAndElseSendItWhatChanges) {
    SimulatorOptions options;
    options.fill = Fill::sessionOpen;
    HostBench bench(numberedSession(3), options);
    bench.runFor(Duration::zero());
    bench.clear();
    bench.receive(0, reply);
    EXPECT_THAT(bench.take(), IsEmpty());
    bench.receive(0, resetByte);
    EXPECT_THAT(bench.take(), ElementsAre(ping));
    bench.edit([](SimulatedSession& session) { session.rename(2, "Kick"); });
    EXPECT_EQ(bench.take().size(), 1u);
    bench.edit([](SimulatedSession& session) {
        session.close();
        session.open();
    });
    EXPECT_GT(bench.take().size(), 100u);
}

// ---- Faders and pots that a surface moves

const Bytes toTheBottom{0xB0, 0x00, 0x00, 0xB0, 0x20, 0x00};

HostBench benchWith(UntouchedMove untouched) {
    SimulatorOptions options;
    options.untouchedMove = untouched;
    return HostBench(numberedSession(1), options);
}

TEST(HUIHostChoices, IgnoreAFaderThatMovesUntouched) {
    HostBench bench = benchWith(UntouchedMove::ignored);
    bench.appear();
    bench.receive(0, toTheBottom);
    EXPECT_EQ(bench.session.find(1)->fader, SimulatedTrack::unityGain);
    EXPECT_THAT(bench.take(), IsEmpty());
}

TEST(HUIHostChoices, PullBackAFaderThatMovesUntouched) {
    HostBench bench = benchWith(UntouchedMove::pulledBack);
    bench.appear();
    bench.receive(0, toTheBottom);
    EXPECT_EQ(bench.session.find(1)->fader, SimulatedTrack::unityGain);
    EXPECT_EQ(bench.takeJoined(), (Bytes{0xB0, 0x00, 0x60, 0xB0, 0x20, 0x00}));
}

TEST(HUIHostChoices, ObeyAFaderThatIsTouchedAllTheSame) {
    for (const UntouchedMove untouched : {UntouchedMove::ignored, UntouchedMove::pulledBack}) {
        HostBench bench = benchWith(untouched);
        bench.appear();
        bench.edge(0, 0, touch, true);
        bench.receive(0, toTheBottom);
        EXPECT_EQ(bench.session.find(1)->fader.raw(), 0);
    }
}

TEST(HUIHostChoices, WriteAValueOverTheNameForAMomentWhileFineIsDown) {
    HostBench bench(numberedSession(2));
    bench.appear();
    bench.receive(0, toTheBottom);
    EXPECT_EQ(displayOf(bench, 0), "T01 ");
    bench.edge(0, keyboardZone, fine, true);
    bench.receive(0, toTheBottom);
    bench.receive(0, {0xB0, 0x41, 0x45}); // the second pot
    EXPECT_EQ(bench.names(), "-oo 11>                         ");
    bench.runFor(seconds(0.8));
    EXPECT_EQ(displayOf(bench, 0), "T01 ");
    EXPECT_EQ(displayOf(bench, 1), "T02 ");
}

TEST(HUIHostChoices, WriteValuesOverNamesAlwaysOrNever) {
    for (const bool always : {true, false}) {
        SimulatorOptions options;
        options.valuesShown = always ? ValuesShown::always : ValuesShown::never;
        HostBench bench(numberedSession(1), options);
        bench.appear();
        bench.edge(0, keyboardZone, fine, !always);
        bench.receive(0, toTheBottom);
        EXPECT_EQ(displayOf(bench, 0), always ? "-oo " : "T01 ");
    }
}

TEST(HUIHostChoices, CountNoMoreClicksOfAMessageThanTheOptionSays) {
    SimulatorOptions options;
    options.mostClicks = 9; // one position of the ring
    HostBench bench(numberedSession(1), options);
    bench.appear();
    bench.receive(0, {0xB0, 0x40, 0x40 + 0x2D});
    EXPECT_DOUBLE_EQ(bench.session.find(1)->panLeft, 20);
    bench.receive(0, {0xB0, 0x40, 0x2D});
    EXPECT_DOUBLE_EQ(bench.session.find(1)->panLeft, 0);
}

// ---- What is shown

TEST(HUIHostChoices, LeaveTheCentreOfARingUnmarked) {
    SimulatorOptions options;
    options.ringMarksCentre = false;
    HostBench bench(numberedSession(1), options);
    EXPECT_EQ(bench.host.picture(0).rings[0], 0x16);
}

TEST(HUIHostChoices, HoldAClipUntilTheNextPlay) {
    SimulatedSession session = numberedSession(1);
    session.change(1, [](SimulatedTrack& track) { track.meter = {SimulatedTrack::MeterProgram::Kind::tone, 1, 1}; });
    SimulatorOptions options;
    options.clipHolds = true;
    options.counter = false;
    HostBench bench(session, options);
    bench.appear();
    bench.press(0, transportZone, play);
    bench.live(seconds(0.1));
    bench.session.change(1, [](SimulatedTrack& track) { track.meter.peak = -20; });
    bench.clear();
    bench.live(seconds(0.2));
    EXPECT_THAT(bench.take(), Each(Bytes{0xA0, 0x00, 0x0C}));
    bench.press(0, transportZone, stop);
    bench.runFor(Duration::zero());
    bench.press(0, transportZone, play);
    bench.clear();
    bench.live(seconds(0.2));
    EXPECT_THAT(bench.take(), Each(Bytes{0xA0, 0x00, 0x05}));
}

TEST(HUIHostChoices, SeparateThePairsOfTheCounterAndSendOnlyDigitsThatChange) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.edit([](SimulatedSession& session) { session.locate(seconds(62.04)); }); // 0:01:02:01
    EXPECT_THAT(bench.take(), ElementsAre(Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x11, 1, 0, 0x12, 0, 0x11, 0xF7}));
    EXPECT_EQ(bench.host.picture(0).counter[6], 0x10);
    EXPECT_EQ(bench.host.picture(0).counter[7], 0x20);
}

TEST(HUIHostChoices, BlankTheCounterWhileNoSessionIsOpen) {
    HostBench bench(numberedSession(1));
    bench.session.close();
    EXPECT_THAT(bench.host.picture(0).counter, Each(0x20));
}

// ---- A dialog on the host's screen

TEST(HUIHostDialog, FreezesTheSurfacesWithItsTextOnTheMainDisplay) {
    HostBench bench(numberedSession(20));
    bench.appear();
    bench.host.setDialog("The disk is full");
    bench.runFor(Duration::zero());
    const std::vector<Bytes> shown = bench.take();
    ASSERT_EQ(shown.size(), 2u); // as much of the main display as the text has
    EXPECT_EQ(shown[0], (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x12, 0x00, 'T', 'h', 'e', ' ', 'd', 'i', 's', 'k',
                               ' ', 'i', 0xF7}));
    bench.press(0, bankZone, 3);
    bench.press(0, 0, mute);
    bench.edit([](SimulatedSession& session) { session.rename(1, "Kick"); });
    EXPECT_THAT(bench.take(), IsEmpty());
    EXPECT_FALSE(bench.session.find(1)->mute);

    bench.host.setDialog(std::nullopt);
    bench.runFor(Duration::zero());
    EXPECT_EQ(displayOf(bench, 0), "Kick");
    EXPECT_EQ(bench.host.offset(), 0);
}

TEST(HUIHostDialog, LetsGoOfWhatWasHeldBeforeIt) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.edge(0, 0, automation, true);
    bench.host.setDialog("Save?");
    bench.edge(0, 0, automation, false);
    bench.host.setDialog(std::nullopt);
    EXPECT_FALSE(bench.host.isAutoHeld(0, 0));
}

TEST(HUIHostDialog, PingsOnOrNotAsChosen) {
    for (const bool pings : {true, false}) {
        SimulatorOptions options;
        options.pingInDialog = pings;
        HostBench bench(numberedSession(1), options);
        bench.appear();
        bench.host.setDialog("Save?");
        bench.runFor(seconds(1.5));
        EXPECT_EQ(std::ranges::count(bench.take(), ping), pings ? 1 : 0);
    }
}

TEST(HUIHostDialog, DisturbsNothingWhereItDoesNotFreezeSurfaces) {
    SimulatorOptions options;
    options.dialogFreezes = false;
    HostBench bench(numberedSession(1), options);
    bench.appear();
    bench.host.setDialog("Save?");
    bench.press(0, 0, mute);
    EXPECT_TRUE(bench.session.find(1)->mute);
}

} // namespace
} // namespace lumbrine
