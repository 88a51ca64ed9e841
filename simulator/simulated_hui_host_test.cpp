// Presence, banking, and the dump to a surface that appears.
#include "simulator/simulated_hui_host.h"
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const Bytes reset{0xFF};

// Displays, faders, rings, LEDs of the strips and others, each with its zone, main display and counter.
constexpr std::size_t dumpSize = 9 + 8 * 2 + 12 + 2 * (8 * 7 + 8 + 5 + 5 + 4 + 6 + 6) + 8 + 1;

Bytes display(int strip, const std::string& text) {
    Bytes message{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, static_cast<std::uint8_t>(strip)};
    for (const char character : text)
        message.push_back(static_cast<std::uint8_t>(character));
    message.push_back(0xF7);
    return message;
}

SimulatorOptions twoSurfaces() {
    SimulatorOptions options;
    options.surfaces = 2;
    return options;
}

// ---- Presence

TEST(SimulatedHUIHost, PingsEachPortEverySecondWhetherAnybodyAnswersOrNot) {
    HostBench bench(numberedSession(3), twoSurfaces());
    bench.runFor(seconds(2));
    EXPECT_THAT(bench.take(0), ElementsAre(ping, ping, ping)); // at 0, 1 and 2 seconds
    EXPECT_THAT(bench.take(1), ElementsAre(ping, ping, ping));
    bench.runFor(seconds(0.999));
    EXPECT_THAT(bench.take(0), IsEmpty());
    bench.runFor(seconds(0.001));
    EXPECT_THAT(bench.take(0), ElementsAre(ping));
}

TEST(SimulatedHUIHost, GivesASurfaceUpWhenAPingStaysOpenForTheTimeOut) {
    SimulatorOptions options;
    options.hostTimeout = seconds(2.5);
    HostBench bench(numberedSession(3), options);
    bench.appear(); // answers the ping at 0, but none after
    bench.runFor(seconds(3.499));
    EXPECT_TRUE(bench.host.port(0).answering());
    bench.runFor(seconds(0.001)); // the ping at 1 second is 2.5 seconds old
    EXPECT_FALSE(bench.host.port(0).answering());
    bench.clear();
    bench.runFor(seconds(1));
    EXPECT_THAT(bench.take(), ElementsAre(ping)); // goes on asking
    bench.receive(0, reply);
    EXPECT_TRUE(bench.host.port(0).answering());
    EXPECT_THAT(bench.take(), Contains(display(0, "T01 "))); // and sends the whole state again
}

TEST(SimulatedHUIHost, KeepsASurfaceThatAnswers) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.live(seconds(20));
    EXPECT_TRUE(bench.host.port(0).answering());
}

TEST(SimulatedHUIHost, SendsTheWholePictureInTheUsualOrderWhenASurfaceFirstAnswers) {
    HostBench bench(numberedSession(1));
    bench.runFor(Duration::zero());
    bench.clear();
    bench.receive(0, reply);
    const std::vector<Bytes> dump = bench.take();
    ASSERT_EQ(dump.size(), dumpSize);
    EXPECT_EQ(dump[0], display(0, "T01 "));
    EXPECT_EQ(dump[1], display(1, "    "));
    EXPECT_EQ(dump[8], display(8, "Pan "));
    EXPECT_EQ(dump[9], (Bytes{0xB0, 0x00, 0x60})); // strip 0 at unity gain
    EXPECT_EQ(dump[10], (Bytes{0xB0, 0x20, 0x00}));
    EXPECT_EQ(dump[11], (Bytes{0xB0, 0x01, 0x00})); // strip 1 has no track
    EXPECT_EQ(dump[12], (Bytes{0xB0, 0x21, 0x00}));
    EXPECT_EQ(dump[25], (Bytes{0xB0, 0x10, 0x56})); // strip 0 panned to the centre
    EXPECT_EQ(dump[26], (Bytes{0xB0, 0x11, 0x00}));
    EXPECT_EQ(dump[37], (Bytes{0xB0, 0x0C, 0x00})); // LEDs of strip 0
    EXPECT_EQ(dump[38], (Bytes{0xB0, 0x2C, 0x01}));
    EXPECT_EQ(dump[44], (Bytes{0xB0, 0x2C, 0x24})); // its track is in Read
    EXPECT_EQ(dump[50], (Bytes{0xB0, 0x2C, 0x07}));
    EXPECT_EQ(dump[51], (Bytes{0xB0, 0x0C, 0x01})); // LEDs of strip 1
    EXPECT_EQ(dump[58], (Bytes{0xB0, 0x2C, 0x04})); // which has no track
    EXPECT_EQ(dump[149], (Bytes{0xB0, 0x0C, 0x0B}));
    EXPECT_THAT(dump, Contains(Bytes{0xB0, 0x2C, 0x43})); // stop is lit
    EXPECT_EQ(dump.back(), (Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x11, 0, 0, 0x10, 0, 0x10, 0, 0x10, 0x20, 0xF7}));
}

TEST(SimulatedHUIHost, SendsTheDumpInAnyOrderThatIsAskedFor) {
    SimulatorOptions options;
    options.dumpOrder = {DumpPart::counter,   DumpPart::globalLEDs, DumpPart::faders, DumpPart::displays,
                         DumpPart::stripLEDs, DumpPart::rings,      DumpPart::ping};
    HostBench bench(numberedSession(1), options);
    bench.appear();
    bench.receive(0, reset);
    const std::vector<Bytes> dump = bench.take();
    EXPECT_EQ(dump[0][6], 0x12); // main display
    EXPECT_EQ(dump[8][6], 0x11); // counter
    EXPECT_EQ(dump[9], (Bytes{0xB0, 0x0C, 0x0B}));
    EXPECT_EQ(dump[dump.size() - 13], (Bytes{0xB0, 0x10, 0x56})); // twelve rings
    EXPECT_EQ(dump.back(), ping);
}

TEST(SimulatedHUIHost, PingsAndShowsEverythingWhenASurfaceAnnouncesItself) {
    HostBench bench(numberedSession(1));
    bench.appear();
    bench.receive(0, reset);
    const std::vector<Bytes> dump = bench.take();
    ASSERT_EQ(dump.size(), dumpSize + 1);
    EXPECT_EQ(dump[0], ping);
    EXPECT_EQ(dump[1], display(0, "T01 "));
}

TEST(SimulatedHUIHost, PingsAtOnceWhenASurfaceThatDidNotAnswerAnnouncesItself) {
    HostBench bench(numberedSession(1));
    bench.runFor(seconds(0.3));
    bench.clear();
    bench.receive(0, reset);
    EXPECT_THAT(bench.take(), ElementsAre(ping));
}

TEST(SimulatedHUIHost, ObeysASurfaceThatAnswersNoPingExceptItsFaders) {
    HostBench bench(numberedSession(3));
    bench.runFor(Duration::zero());
    bench.press(0, 0, hui_address::mute);
    EXPECT_TRUE(bench.session.tracks()[0].mute);
    bench.receive(0, {0xB0, 0x00, 0x10, 0xB0, 0x20, 0x00});
    EXPECT_EQ(bench.session.tracks()[0].fader, SimulatedTrack::unityGain);
}

TEST(SimulatedHUIHost, LetsGoOfWhatALostSurfaceHeld) {
    SimulatorOptions options;
    options.hostTimeout = seconds(1);
    HostBench bench(numberedSession(3), options);
    bench.appear();
    bench.edge(0, 1, hui_address::touch, true);
    bench.edge(0, hui_address::keyboardZone, hui_address::shift, true);
    bench.edge(0, 2, hui_address::automation, true);
    EXPECT_TRUE(bench.host.isTouched(0, 1));
    EXPECT_EQ(bench.names().substr(8, 4), "Read");
    bench.runFor(seconds(2));
    EXPECT_FALSE(bench.host.isTouched(0, 1));
    EXPECT_EQ(bench.names().substr(8, 4), "T03 ");
    bench.press(0, 0, hui_address::select);
    bench.press(0, 1, hui_address::select);
    EXPECT_FALSE(bench.session.tracks()[0].selected); // SHIFT is up again
}

TEST(SimulatedHUIHost, PingsWithoutASessionOnlyWhereTheOptionSaysSo) {
    SimulatedSession closed = numberedSession(3);
    closed.close();
    HostBench pinging(closed);
    pinging.runFor(seconds(2));
    EXPECT_EQ(pinging.take().size(), 3u);

    SimulatorOptions options;
    options.pingWithoutSession = false;
    HostBench silent(closed, options);
    silent.runFor(seconds(2));
    silent.receive(0, reset);
    EXPECT_THAT(silent.take(), IsEmpty());
    silent.edit([](SimulatedSession& session) { session.open(); });
    EXPECT_THAT(silent.take(), ElementsAre(ping));
}

TEST(SimulatedHUIHost, NeitherPingsNorHearsWhileItDoesNotHoldThePorts) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.host.holdPorts(false);
    bench.runFor(seconds(5));
    bench.press(0, 0, hui_address::mute);
    EXPECT_THAT(bench.take(), IsEmpty());
    EXPECT_FALSE(bench.session.tracks()[0].mute);
    bench.host.holdPorts(true);
    bench.runFor(Duration::zero());
    EXPECT_THAT(bench.take(), ElementsAre(ping));
    bench.receive(0, reply);
    EXPECT_EQ(bench.take().size(), dumpSize);
}

TEST(SimulatedHUIHost, GivesUpASurfaceWhoseCableIsCutAndShowsWhatItMissedAfterwards) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.host.cut(0, true);
    bench.edit([](SimulatedSession& session) { session.rename(1, "Kick"); });
    bench.runFor(seconds(2)); // shorter than the time-out
    EXPECT_THAT(bench.take(), IsEmpty());
    bench.host.cut(0, false);
    bench.runFor(Duration::zero());
    EXPECT_THAT(bench.take(), ElementsAre(display(0, "Kick")));

    bench.host.cut(0, true);
    bench.runFor(seconds(10));
    EXPECT_FALSE(bench.host.port(0).answering());
}

TEST(SimulatedHUIHost, ForgetsTheZoneWhenTheCableIsCut) {
    HostBench bench(numberedSession(3));
    bench.appear();
    bench.receive(0, {0xB0, 0x0F, 0x00});
    bench.host.cut(0, true);
    bench.host.cut(0, false);
    bench.receive(0, {0xB0, 0x2F, 0x42});
    EXPECT_FALSE(bench.session.tracks()[0].mute);
}

// ---- Sessions

TEST(SimulatedHUIHost, BlanksTheSurfaceWhenTheSessionCloses) {
    HostBench bench(numberedSession(2));
    bench.appear();
    bench.edit([](SimulatedSession& session) { session.close(); });
    const std::vector<Bytes> sent = bench.take();
    EXPECT_EQ(sent[0], display(0, "    "));
    EXPECT_EQ(sent[1], display(1, "    "));
    EXPECT_EQ(sent[2], display(8, "    "));
    EXPECT_EQ(sent[3], (Bytes{0xB0, 0x00, 0x00}));        // fader down
    EXPECT_THAT(sent, Contains(Bytes{0xB0, 0x10, 0x00})); // ring off
    EXPECT_THAT(sent, Contains(Bytes{0xB0, 0x2C, 0x03})); // stop dark
}

TEST(SimulatedHUIHost, ShowsEverythingWhenASessionOpens) {
    SimulatedSession closed = numberedSession(2);
    closed.close();
    HostBench bench(closed);
    bench.appear();
    bench.edit([](SimulatedSession& session) { session.open(); });
    const std::vector<Bytes> sent = bench.take();
    ASSERT_EQ(sent.size(), dumpSize);
    EXPECT_EQ(sent[0], display(0, "T01 "));
    EXPECT_EQ(std::ranges::count(sent, Bytes{0xB0, 0x2C, 0x24}), 2); // each track tells its mode
}

TEST(SimulatedHUIHost, LeavesMainDisplayAndCounterOutWhereTheOptionsSaySo) {
    SimulatorOptions options;
    options.mainDisplay = false;
    options.counter = false;
    HostBench bench(numberedSession(1), options);
    bench.appear();
    bench.receive(0, reset);
    EXPECT_EQ(bench.take().size(), dumpSize + 1 - 9);
}

// ---- Banking

TEST(SimulatedHUIHost, MovesByTheWidthOfTheBankOrByOne) {
    HostBench bench(numberedSession(30));
    bench.appear();
    bench.press(0, hui_address::bankZone, 3);
    EXPECT_EQ(bench.names(), "T09 T10 T11 T12 T13 T14 T15 T16 ");
    bench.press(0, hui_address::bankZone, 2);
    EXPECT_EQ(bench.names(), "T10 T11 T12 T13 T14 T15 T16 T17 ");
    bench.press(0, hui_address::bankZone, 0);
    bench.press(0, hui_address::bankZone, 1);
    EXPECT_EQ(bench.names(), "T01 T02 T03 T04 T05 T06 T07 T08 ");
}

TEST(SimulatedHUIHost, TakesTwoSurfacesForOneWiderBank) {
    HostBench bench(numberedSession(40), twoSurfaces());
    bench.appear();
    EXPECT_EQ(bench.host.width(), 16);
    EXPECT_EQ(bench.names(1), "T09 T10 T11 T12 T13 T14 T15 T16 ");
    bench.press(0, hui_address::bankZone, 3);
    EXPECT_EQ(bench.names(0), "T17 T18 T19 T20 T21 T22 T23 T24 ");
    EXPECT_EQ(bench.names(1), "T25 T26 T27 T28 T29 T30 T31 T32 ");
    bench.press(1, hui_address::bankZone, 1); // either surface banks
    EXPECT_EQ(bench.host.offset(), 0);
}

TEST(SimulatedHUIHost, FillsTheLastBankOrLeavesItsRestBlank) {
    HostBench filled(numberedSession(11));
    filled.appear();
    filled.press(0, hui_address::bankZone, 3);
    EXPECT_EQ(filled.names(), "T04 T05 T06 T07 T08 T09 T10 T11 ");

    SimulatorOptions options;
    options.endOfSession = EndOfSession::blank;
    HostBench blank(numberedSession(11), options);
    blank.appear();
    blank.press(0, hui_address::bankZone, 3);
    EXPECT_EQ(blank.names(), "T09 T10 T11                     ");
}

TEST(SimulatedHUIHost, SendsNothingWhenItCannotMove) {
    HostBench bench(numberedSession(11));
    bench.appear();
    bench.press(0, hui_address::bankZone, 1);
    bench.press(0, hui_address::bankZone, 0);
    EXPECT_THAT(bench.take(), IsEmpty());
    bench.press(0, hui_address::bankZone, 3);
    bench.clear();
    bench.press(0, hui_address::bankZone, 3);
    bench.press(0, hui_address::bankZone, 2);
    EXPECT_THAT(bench.take(), IsEmpty());
}

TEST(SimulatedHUIHost, SendsAllOfAStripAfterAMoveOrOnlyWhatDiffers) {
    HostBench all(numberedSession(30));
    all.appear();
    all.press(0, hui_address::bankZone, 3);
    EXPECT_EQ(all.take().size(), 8u + 16u + 8u + 112u); // displays, faders, rings, LEDs with their zones

    SimulatorOptions options;
    options.redrawOnBank = false;
    HostBench differing(numberedSession(30), options);
    differing.appear();
    differing.press(0, hui_address::bankZone, 3);
    EXPECT_EQ(differing.take().size(), 8u); // only the names differ
}

TEST(SimulatedHUIHost, CountsForTheWidthOnlySurfacesThatAnswer) {
    HostBench bench(numberedSession(40), twoSurfaces());
    bench.runFor(Duration::zero());
    EXPECT_EQ(bench.host.width(), 8);
    bench.receive(1, reply); // the second one alone takes the first tracks
    EXPECT_EQ(bench.host.width(), 8);
    EXPECT_EQ(bench.names(1), "T01 T02 T03 T04 T05 T06 T07 T08 ");
    bench.receive(0, reply);
    EXPECT_EQ(bench.host.width(), 16);
    EXPECT_EQ(bench.names(0), "T01 T02 T03 T04 T05 T06 T07 T08 ");
    EXPECT_EQ(bench.names(1), "T09 T10 T11 T12 T13 T14 T15 T16 ");
}

TEST(SimulatedHUIHost, CountsForTheWidthAllSurfacesThatAreSetUpWhereTheOptionSaysSo) {
    SimulatorOptions options = twoSurfaces();
    options.bankWidth = BankWidth::configured;
    HostBench bench(numberedSession(40), options);
    bench.runFor(Duration::zero());
    bench.receive(1, reply);
    EXPECT_EQ(bench.host.width(), 16);
    EXPECT_EQ(bench.names(1), "T09 T10 T11 T12 T13 T14 T15 T16 ");
}

TEST(SimulatedHUIHost, StaysWithinTheSessionWhenASecondSurfaceWidensTheBank) {
    HostBench bench(numberedSession(20), twoSurfaces());
    bench.runFor(Duration::zero());
    bench.receive(0, reply);
    bench.host.scrollTo(12);
    EXPECT_EQ(bench.host.offset(), 12);
    bench.receive(1, reply);
    EXPECT_EQ(bench.host.offset(), 4);
}

// ---- The user at the host's own screen

TEST(SimulatedHUIHost, ShowsWhatTheUserDoesToTheTracks) {
    HostBench bench(numberedSession(9));
    bench.appear();
    bench.edit([](SimulatedSession& session) { session.rename(1, "Kick"); });
    EXPECT_THAT(bench.take(), ElementsAre(display(0, "Kick")));
    bench.edit([](SimulatedSession& session) { session.setHidden(2, true); });
    EXPECT_EQ(bench.names(), "KickT03 T04 T05 T06 T07 T08 T09 ");
    bench.edit([](SimulatedSession& session) { session.setHidden(2, false); });
    bench.edit([](SimulatedSession& session) { session.move(1, 2); });
    EXPECT_EQ(bench.names(), "T02 T03 KickT04 T05 T06 T07 T08 ");
    bench.edit([](SimulatedSession& session) { session.remove(2); });
    EXPECT_EQ(bench.names(), "T03 KickT04 T05 T06 T07 T08 T09 ");
    bench.edit([](SimulatedSession& session) {
        SimulatedTrack track;
        track.name = "New";
        session.add(track, 0);
    });
    EXPECT_EQ(bench.names(), "New T03 KickT04 T05 T06 T07 T08 ");
}

TEST(SimulatedHUIHost, ScrollsAndBanksWithoutASurface) {
    HostBench bench(numberedSession(30));
    bench.appear();
    bench.host.scrollTo(5);
    EXPECT_EQ(bench.host.offset(), 5);
    bench.host.bank(BankButton::bankRight);
    EXPECT_EQ(bench.host.offset(), 13);
    bench.host.scrollTo(99);
    EXPECT_EQ(bench.host.offset(), 22);
    bench.host.scrollTo(-1);
    EXPECT_EQ(bench.host.offset(), 0);
}

TEST(SimulatedHUIHost, ComesBackIntoTheSessionWhenTracksGo) {
    HostBench bench(numberedSession(20));
    bench.appear();
    bench.host.scrollTo(12);
    bench.edit([](SimulatedSession& session) {
        for (int id = 1; id <= 10; ++id)
            session.remove(id);
    });
    EXPECT_EQ(bench.host.offset(), 2);
    EXPECT_EQ(bench.names(), "T13 T14 T15 T16 T17 T18 T19 T20 ");
}

} // namespace
} // namespace lumbrine
