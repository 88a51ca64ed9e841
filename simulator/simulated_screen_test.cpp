// The elements on the screen of the simulated Pro Tools, and the effects of pressing them.
#include "simulator/testing/screen_bench.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using Texts = std::vector<std::string>;

class SimulatedScreenTest : public ScreenBench {
protected:
    void edit(const std::function<void(SimulatedSession&)>& change) { proTools->edit(change); }

    // When the host pings, it has taken the ports.
    bool portsAreTaken() {
        const std::uint64_t before = proTools->snapshot().surfaces[0].pingsSent;
        runtime.runFor(1500ms);
        return proTools->snapshot().surfaces[0].pingsSent > before;
    }
};

// ---- The windows

TEST_F(SimulatedScreenTest, HasAMenuBarAndTwoWindows) {
    start();
    EXPECT_THAT(titlesOf(windows()), ElementsAre("Mix: Test", "Edit: Test"));
    const auto bar = read<ElementHandle>(app(), "AXMenuBar");
    ASSERT_TRUE(bar);
    EXPECT_EQ(role(*bar), "AXMenuBar");
    EXPECT_THAT(titlesOf(children(*bar)),
                ElementsAre("Apple", "Pro Tools", "File", "Edit", "Track", "Setup", "Window"));
    const ElementHandle setup = children(children(*bar).at(5)).at(0);
    EXPECT_EQ(role(setup), "AXMenu");
    EXPECT_THAT(titlesOf(children(setup)), Contains("Peripherals..."));
}

TEST_F(SimulatedScreenTest, SpeaksJapanese) {
    start({.japanese = true});
    EXPECT_THAT(titlesOf(windows()), ElementsAre("ミックス: Test", "編集: Test"));
    const auto bar = read<ElementHandle>(app(), "AXMenuBar");
    ASSERT_TRUE(bar);
    EXPECT_THAT(titlesOf(children(children(children(*bar).at(5)).at(0))), Contains("ペリフェラル..."));
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint now) { shown.openPeripherals(now); });
    runtime.runFor(300ms);
    const ElementHandle dialog = window("ペリフェラル");
    EXPECT_THAT(titlesOf(children(children(dialog).at(0))), Contains("MIDIコントローラー"));
    EXPECT_THAT(titlesOf(children(dialog)), ElementsAre("none", "キャンセル", "OK"));
}

TEST_F(SimulatedScreenTest, HasNoWindowsOfAClosedSession) {
    start();
    const Elements before = windows();
    edit([](SimulatedSession& session) { session.close(); });
    EXPECT_THAT(windows(), IsEmpty());
    EXPECT_EQ(role(before.at(0)), "none");
    edit([](SimulatedSession& session) { session.open(); });
    EXPECT_EQ(windows().size(), 2U);
}

TEST_F(SimulatedScreenTest, HasTheWindowsThatItsUserHasOpened) {
    start();
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint) { shown.showWindows(true, false); });
    EXPECT_THAT(titlesOf(windows()), ElementsAre("Edit: Test"));
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint) { shown.showWindows(false, true); });
    EXPECT_THAT(titlesOf(windows()), ElementsAre("Mix: Test"));
}

// ---- The track list

TEST_F(SimulatedScreenTest, ListsTheTracksInTheEditWindow) {
    start();
    const ElementHandle table = children(editWindow()).at(0);
    EXPECT_EQ(role(table), "AXTable");
    EXPECT_EQ(text(table, "AXDescription"), "Track List");
    EXPECT_THAT(listedNames(), ElementsAre("T01", "T02", "T03"));
    edit([](SimulatedSession& session) {
        session.rename(2, "Vox");
        session.move(3, 0);
    });
    EXPECT_THAT(listedNames(), ElementsAre("T03", "T01", "Vox"));
}

TEST_F(SimulatedScreenTest, NumbersTheNamesWhenAskedTo) {
    start({.numbers = NameNumbers::fullStop});
    EXPECT_THAT(listedNames(), ElementsAre("1. T01", "2. T02", "3. T03"));
    start({.numbers = NameNumbers::ideographic});
    EXPECT_THAT(listedNames(), ElementsAre("1。 T01", "2。 T02", "3。 T03"));
}

TEST_F(SimulatedScreenTest, ListsHiddenTracksOnlyWhenAskedTo) {
    for (const bool listed : {false, true}) {
        start({.hiddenTracksListed = listed});
        edit([](SimulatedSession& session) { session.setHidden(2, true); });
        EXPECT_EQ(listedNames().size(), listed ? 3U : 2U);
    }
}

TEST_F(SimulatedScreenTest, MarksTheSelectedRows) {
    start();
    edit([](SimulatedSession& session) { session.select(2, false); });
    const Elements found = rows();
    EXPECT_EQ(read<bool>(found.at(0), "AXSelected"), false);
    EXPECT_EQ(read<bool>(found.at(1), "AXSelected"), true);
}

TEST_F(SimulatedScreenTest, KeepsTheRowOfATrackThatMovesAndLosesThatOfOneThatIsGone) {
    start();
    const Elements found = rows();
    edit([](SimulatedSession& session) {
        session.move(1, 2);
        session.remove(2);
        session.setHidden(3, true);
    });
    EXPECT_EQ(role(found.at(0)), "AXRow");
    EXPECT_EQ(role(found.at(1)), "none");
    EXPECT_EQ(role(found.at(2)), "none");
}

TEST_F(SimulatedScreenTest, LosesTheRowsInAClosedFolder) {
    std::vector<SimulatedTrack> tracks(2);
    tracks[0].isFolder = true;
    tracks[1].folder = 1;
    start({}, SimulatedSession("Test", tracks));
    const Elements found = rows();
    edit([](SimulatedSession& session) { session.change(1, [](SimulatedTrack& folder) { folder.closed = true; }); });
    EXPECT_EQ(role(found.at(0)), "AXRow");
    EXPECT_EQ(role(found.at(1)), "none");
}

// ---- The Mix window

TEST_F(SimulatedScreenTest, ShowsNamesAndCommentsInStrips) {
    start();
    edit([](SimulatedSession& session) {
        session.change(2, [](SimulatedTrack& track) { track.comment = "ルームマイク"; });
        session.setHidden(3, true);
    });
    EXPECT_THAT(mixedTracks(), ElementsAre("T01: ", "T02: ルームマイク"));
    Texts roles;
    for (const ElementHandle& part : children(strips().at(0)))
        roles.push_back(role(part));
    EXPECT_THAT(roles, ElementsAre("AXPopUpButton", "AXSlider", "AXButton", "AXPopUpButton", "AXTextField"));
}

TEST_F(SimulatedScreenTest, HasOnlyTheStripsThatAreInSight) {
    start({.mixStrips = 4}, numberedSession(10));
    EXPECT_THAT(mixedTracks(), ElementsAre("T01: ", "T02: ", "T03: ", "T04: "));
    const ElementHandle first = strips().at(0);
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint) { shown.scrollMix(8); });
    EXPECT_THAT(mixedTracks(), ElementsAre("T09: ", "T10: "));
    EXPECT_EQ(role(first), "none");
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint) { shown.scrollMix(20); });
    EXPECT_THAT(mixedTracks(), IsEmpty());
}

TEST_F(SimulatedScreenTest, FurnishesEachWindow) {
    start({.furniture = 250});
    for (const ElementHandle& found : windows()) {
        std::size_t pieces = 0;
        for (const ElementHandle& child : children(found))
            for (const ElementHandle& piece : children(child))
                pieces += role(piece) == "AXStaticText" ? 1 : 0;
        EXPECT_EQ(pieces, 250U);
    }
}

// ---- The Peripherals dialog

TEST_F(SimulatedScreenTest, OpensThePeripheralsDialogAMomentAfterTheMenuItem) {
    start();
    EXPECT_TRUE(choosePeripherals());
    runtime.runFor(299ms);
    EXPECT_THAT(titlesOf(windows()), Not(Contains("Peripherals")));
    runtime.runFor(1ms);
    const ElementHandle dialog = window("Peripherals");
    EXPECT_EQ(text(dialog, "AXSubrole"), "AXDialog");
    EXPECT_THAT(titlesOf(children(dialog)), ElementsAre("none", "Cancel", "OK"));
    EXPECT_THAT(
        titlesOf(children(children(dialog).at(0))),
        ElementsAre("Synchronization", "Machine Control", "MIDI Controllers", "Ethernet Controllers", "Mic Preamps"));
}

TEST_F(SimulatedScreenTest, HasOneTabOfTheDialogInFront) {
    start();
    choosePeripherals();
    runtime.runFor(300ms);
    const Elements tabs = children(children(window("Peripherals")).at(0));
    EXPECT_EQ(read<bool>(tabs.at(0), "AXValue"), true);
    EXPECT_TRUE(press(tabs.at(2)));
    EXPECT_EQ(read<bool>(tabs.at(0), "AXValue"), false);
    EXPECT_EQ(read<bool>(tabs.at(2), "AXValue"), true);
}

TEST_F(SimulatedScreenTest, TakesTheMIDIPortsWhenTheDialogIsClosedWithOK) {
    SimulatorOptions options;
    options.portsLost = true;
    startWith(options, numberedSession(3));
    EXPECT_FALSE(portsAreTaken());
    choosePeripherals();
    runtime.runFor(300ms);
    const ElementHandle dialog = window("Peripherals");
    EXPECT_TRUE(press(children(dialog).at(2)));
    EXPECT_EQ(role(dialog), "none");
    EXPECT_TRUE(portsAreTaken());
}

TEST_F(SimulatedScreenTest, ChangesNothingWhenTheDialogIsCancelled) {
    SimulatorOptions options;
    options.portsLost = true;
    startWith(options, numberedSession(3));
    choosePeripherals();
    runtime.runFor(300ms);
    EXPECT_TRUE(press(children(window("Peripherals")).at(1)));
    EXPECT_THAT(titlesOf(windows()), Not(Contains("Peripherals")));
    EXPECT_FALSE(portsAreTaken());
}

TEST_F(SimulatedScreenTest, HasAnotherDialogEachTime) {
    start();
    choosePeripherals();
    choosePeripherals(); // it is opening already
    runtime.runFor(300ms);
    const ElementHandle ok = children(window("Peripherals")).at(2);
    EXPECT_TRUE(press(ok));
    choosePeripherals();
    runtime.runFor(300ms);
    EXPECT_FALSE(press(ok));
    EXPECT_THAT(titlesOf(windows()), Contains("Peripherals"));
}

TEST_F(SimulatedScreenTest, MayLackMenuItemTabOrButtonAndNeverOpen) {
    start({.menuItem = false});
    EXPECT_FALSE(choosePeripherals());

    start({.midiTab = false, .okButton = false});
    choosePeripherals();
    runtime.runFor(300ms);
    const ElementHandle dialog = window("Peripherals");
    EXPECT_THAT(titlesOf(children(dialog)), ElementsAre("none", "Cancel"));
    EXPECT_THAT(titlesOf(children(children(dialog).at(0))), Not(Contains("MIDI Controllers")));

    start({.dialogOpens = false});
    EXPECT_TRUE(choosePeripherals());
    runtime.runFor(1min);
    EXPECT_THAT(titlesOf(windows()), Not(Contains("Peripherals")));
}

// ---- Alerts

TEST_F(SimulatedScreenTest, AlertsItsUserWhenTheSurfacesAreLost) {
    start();
    proTools->releasePorts();
    const ElementHandle alert = windows().at(0);
    EXPECT_EQ(text(alert, "AXSubrole"), "AXDialog");
    const Elements parts = children(alert);
    EXPECT_EQ(text(parts.at(0), "AXValue"), "Lost communication with");
    EXPECT_EQ(text(parts.at(1), "AXValue"), "HUI");
    EXPECT_EQ(role(parts.at(1)), "AXStaticText");
    EXPECT_TRUE(press(parts.at(2)));
    EXPECT_EQ(role(alert), "none");
    EXPECT_FALSE(press(parts.at(2)));
}

TEST_F(SimulatedScreenTest, KeepsAlertsApart) {
    start();
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint) {
        shown.showAlert({"The disk is slow"});
        shown.showAlert({"HUI is gone"});
    });
    EXPECT_TRUE(press(children(windows().at(1)).at(1)));
    EXPECT_EQ(text(children(windows().at(0)).at(0), "AXValue"), "The disk is slow");
    EXPECT_EQ(windows().size(), 3U);
}

TEST_F(SimulatedScreenTest, RestsWithoutDialogs) {
    start({.mixStrips = 1});
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint now) {
        shown.showAlert({"HUI"});
        shown.openPeripherals(now);
        shown.showWindows(false, false);
        shown.scrollMix(2);
    });
    runtime.runFor(1s);
    proTools->rest();
    EXPECT_THAT(titlesOf(windows()), ElementsAre("Mix: Test", "Edit: Test"));
    EXPECT_THAT(mixedTracks(), ElementsAre("T01: "));
}

TEST(SimulatedScreenDialog, IsShownInOneLineUntilItIsClosed) {
    const SimulatedSession session = numberedSession(1);
    SimulatedScreen screen({}, session, [](TimePoint) {});
    EXPECT_EQ(screen.dialogText(), std::nullopt);
    screen.showAlert({"Lost communication with", "HUI"}); // holds nothing up
    EXPECT_EQ(screen.dialogText(), std::nullopt);
    screen.showDialog({"Save changes to", "Evening Light?"});
    EXPECT_EQ(screen.dialogText(), "Save changes to Evening Light?");
    screen.closeDialogs();
    EXPECT_EQ(screen.dialogText(), std::nullopt);
    EXPECT_EQ(screen.alertCount(), 1u);
}

} // namespace
} // namespace lumbrine
