#include "simulator/screen_outline.h"
#include "simulator/testing/screen_bench.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = ScreenElement::Kind;

class ScreenOutlineTest : public ScreenBench {
protected:
    ScreenNode outline() {
        ScreenNode application;
        proTools->lookAtScreen([&](SimulatedScreen& screen, TimePoint now) { application = outlineOf(screen, now); });
        return application;
    }

    static std::vector<std::string> titlesOf(const std::vector<const ScreenNode*>& nodes) {
        std::vector<std::string> titles;
        for (const ScreenNode* node : nodes)
            titles.push_back(node->title.value_or("none"));
        return titles;
    }

    // The same tree as other programs read it, attribute by attribute.
    void expectAsRead(const ScreenNode& node, const ElementHandle& element) {
        EXPECT_EQ(read<std::string>(element, "AXRole"), node.role);
        EXPECT_EQ(read<std::string>(element, "AXSubrole"), node.subrole);
        EXPECT_EQ(read<std::string>(element, "AXTitle"), node.title);
        EXPECT_EQ(read<std::string>(element, "AXDescription"), node.description);
        EXPECT_EQ(read<std::string>(element, "AXValue"), node.text);
        EXPECT_EQ(read<bool>(element, "AXValue"), node.isOn);
        EXPECT_EQ(read<bool>(element, "AXSelected"), node.isSelected);
        const auto inside =
            read<std::vector<ElementHandle>>(element, "AXChildren").value_or(std::vector<ElementHandle>());
        ASSERT_EQ(inside.size(), node.children.size()) << node.role;
        for (std::size_t i = 0; i < inside.size(); ++i)
            expectAsRead(node.children[i], inside[i]);
    }
};

TEST_F(ScreenOutlineTest, IsWhatOtherProgramsRead) {
    start();
    proTools->arrangeScreen([](SimulatedScreen& screen, TimePoint now) {
        screen.openPeripherals(now);
        screen.showAlert({"Lost communication with", "HUI"});
    });
    runtime.runFor(300ms);
    expectAsRead(outline(), app());
}

TEST_F(ScreenOutlineTest, HasWindowsAndMenus) {
    start();
    const ScreenNode application = outline();
    EXPECT_THAT(titlesOf(windowsIn(application)), ElementsAre("Mix: Test", "Edit: Test"));
    EXPECT_THAT(titlesOf(menusIn(application)),
                ElementsAre("Apple", "Pro Tools", "File", "Edit", "Track", "Setup", "Window"));
}

TEST_F(ScreenOutlineTest, AtFirstEachWindowIsOpenedTheFrontOneLast) {
    start();
    const ScreenNode application = outline();
    const WindowChanges changes = windowChanges(ScreenNode(), application);
    EXPECT_THAT(titlesOf(changes.opened), ElementsAre("Edit: Test", "Mix: Test"));
    EXPECT_THAT(changes.closed, IsEmpty());
    EXPECT_THAT(changes.changed, IsEmpty());
}

TEST_F(ScreenOutlineTest, NothingChangesBetweenTwoLooks) {
    start();
    const ScreenNode before = outline();
    runtime.runFor(10s);
    EXPECT_EQ(outline(), before);
}

TEST_F(ScreenOutlineTest, AnAlertIsAWindowOfItsOwnThatOpensAndCloses) {
    start();
    const ScreenNode before = outline();
    proTools->arrangeScreen([](SimulatedScreen& screen, TimePoint) { screen.showAlert({"The disk is slow"}); });
    const ScreenNode alert = outline();
    const WindowChanges opening = windowChanges(before, alert);
    ASSERT_EQ(opening.opened.size(), 1U);
    EXPECT_EQ(opening.opened[0]->subrole, "AXDialog");
    EXPECT_THAT(opening.changed, IsEmpty());
    proTools->rest();
    EXPECT_THAT(windowChanges(alert, outline()).closed, ElementsAre(opening.opened[0]->element));
}

TEST_F(ScreenOutlineTest, ARenamedTrackChangesTheWindowsThatShowIt) {
    start();
    const ScreenNode before = outline();
    proTools->edit([](SimulatedSession& session) { session.rename(1, "Vox"); });
    const ScreenNode after = outline();
    const WindowChanges changes = windowChanges(before, after);
    EXPECT_THAT(titlesOf(changes.changed), ElementsAre("Edit: Test", "Mix: Test"));
    EXPECT_THAT(changes.opened, IsEmpty());
}

TEST_F(ScreenOutlineTest, AWindowReadsAsLines) {
    start();
    proTools->arrangeScreen([](SimulatedScreen& screen, TimePoint now) { screen.openPeripherals(now); });
    runtime.runFor(300ms);
    const ScreenNode application = outline();
    const std::vector<ScreenLine> lines = linesOf(*windowsIn(application).front());
    EXPECT_THAT(lines, Contains(ScreenLine{{Kind::tab, 1, 0}, 1, "● Synchronization", true}));
    EXPECT_THAT(lines, Contains(ScreenLine{{Kind::tab, 1, 2}, 1, "○ MIDI Controllers", true}));
    EXPECT_THAT(lines, Contains(ScreenLine{{Kind::dialogButton, 1, 1}, 0, "OK", true}));
}

TEST_F(ScreenOutlineTest, TheLinesOfTheEditWindowNameItsTracks) {
    start();
    proTools->edit([](SimulatedSession& session) { session.rename(1, "Vox"); });
    const ScreenNode application = outline();
    const std::vector<ScreenLine> lines = linesOf(*windowsIn(application).back());
    EXPECT_EQ(lines.front(), (ScreenLine{{Kind::trackList}, 0, "Track List", false}));
    EXPECT_EQ(lines.at(1), (ScreenLine{{Kind::trackName, 1}, 3, "Vox", false}));
}

TEST_F(ScreenOutlineTest, APressIsSeenAtTheNextLook) {
    start();
    proTools->arrangeScreen([](SimulatedScreen& screen, TimePoint) { screen.showAlert({"The disk is slow"}); });
    proTools->actOnScreen(
        [](SimulatedScreen& screen, TimePoint now) { EXPECT_TRUE(screen.press({Kind::alertButton, 1}, now)); });
    const ScreenNode application = outline();
    EXPECT_EQ(windowsIn(application).size(), 2U);
}

TEST_F(ScreenOutlineTest, WhileTheProgramIsStuckNobodyLooks) {
    start();
    proTools->stick(5s);
    bool hasLooked = false;
    proTools->lookAtScreen([&](SimulatedScreen&, TimePoint) { hasLooked = true; });
    EXPECT_FALSE(hasLooked);
}

} // namespace
} // namespace lumbrine
