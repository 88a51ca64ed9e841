// Access of other programs to the simulated screen, and its faults.
#include "simulator/testing/screen_bench.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class SimulatedAccessibilityTest : public ScreenBench {
protected:
    // Reads all attributes of the screen and returns their number.
    std::size_t walk(const ElementHandle& element, int depth = 0) {
        std::size_t count = 1;
        if (depth == 12) return count;
        role(element);
        for (const ElementHandle& child : children(element))
            count += walk(child, depth + 1);
        return count;
    }
};

TEST_F(SimulatedAccessibilityTest, FindsTheProgramByItsBundleIdentifier) {
    start();
    EXPECT_EQ(screen().runningApplication("com.avid.ProTools"), SimulatedAccessibility::processIdentifier);
    EXPECT_EQ(screen().runningApplication("com.apple.finder"), std::nullopt);
    EXPECT_EQ(role(screen().applicationElement(1)), "none");
    screen().setRunning(false);
    EXPECT_EQ(screen().runningApplication("com.avid.ProTools"), std::nullopt);
    EXPECT_EQ(role(app()), "none");
}

TEST_F(SimulatedAccessibilityTest, ShowsNothingWithoutPermission) {
    start({.trusted = false});
    EXPECT_FALSE(screen().isTrusted());
    EXPECT_EQ(role(app()), "none");
    EXPECT_FALSE(press(app()));
    EXPECT_EQ(screen().prompts(), 0);
    EXPECT_FALSE(screen().isTrustedOrPrompt());
    EXPECT_EQ(screen().prompts(), 1);
    screen().setTrusted(true);
    EXPECT_TRUE(screen().isTrustedOrPrompt());
    EXPECT_EQ(screen().prompts(), 1);
    EXPECT_EQ(role(app()), "AXApplication");
}

TEST_F(SimulatedAccessibilityTest, LosesThePermissionInTheMiddle) {
    start();
    screen().beforeRead([this](std::uint64_t number) {
        if (number == 5) screen().setTrusted(false);
    });
    EXPECT_GT(walk(app()), 1U);
    EXPECT_EQ(screen().reads(), 5U);
}

TEST_F(SimulatedAccessibilityTest, TakesNoOtherActionThanPressing) {
    start();
    const auto bar = read<ElementHandle>(app(), "AXMenuBar");
    const ElementHandle item = children(children(children(*bar).at(5)).at(0)).at(2);
    EXPECT_FALSE(screen().perform(item, "AXShowMenu"));
    EXPECT_TRUE(screen().perform(item, "AXPress"));
    EXPECT_FALSE(press(*bar));
}

TEST_F(SimulatedAccessibilityTest, LogsWhatIsPressedAndWhatThatDoes) {
    start();
    std::vector<std::string> told;
    screen().onPress([&](const std::string& what) { told.push_back(what); });
    proTools->releasePorts();
    press(children(windows().at(0)).at(2));
    choosePeripherals();
    runtime.runFor(300ms);
    const ElementHandle dialog = window("Peripherals");
    press(children(children(dialog).at(0)).at(2));
    press(children(dialog).at(2));
    EXPECT_THAT(told, ElementsAre("OK pressed: the alert \"Lost communication with HUI\" is gone",
                                  "menu item \"Peripherals...\" chosen", "tab \"MIDI Controllers\" chosen",
                                  "OK pressed: the Peripherals dialog is closed, the MIDI ports are taken"));
}

TEST_F(SimulatedAccessibilityTest, AnswersNothingWhileTheProgramIsStuck) {
    start();
    choosePeripherals();
    runtime.runFor(300ms);
    const ElementHandle ok = children(window("Peripherals")).at(2);
    proTools->stick(2s);
    EXPECT_EQ(role(app()), "none");
    EXPECT_FALSE(press(ok));
    runtime.runFor(2s);
    EXPECT_EQ(role(app()), "AXApplication");
    EXPECT_TRUE(press(ok));
}

TEST_F(SimulatedAccessibilityTest, FailsAboutTheChosenShareOfReads) {
    start({.failOneIn = 4});
    int failed = 0;
    for (int i = 0; i < 1000; ++i)
        failed += role(app()) == "none" ? 1 : 0;
    EXPECT_NEAR(failed, 250, 50);
    screen().setFaults(0, 0);
    EXPECT_EQ(role(app()), "AXApplication");
}

TEST_F(SimulatedAccessibilityTest, HandsOutElementsThatVanish) {
    start({.vanishOneIn = 3}, numberedSession(900));
    screen().setFaults(0, 0);
    const ElementHandle mixer = children(mixWindow()).at(0);
    screen().setFaults(0, 3);
    const Elements found = children(mixer);
    ASSERT_EQ(found.size(), 900U);
    const auto gone = std::ranges::count_if(found, [this](const auto& strip) { return role(strip) == "none"; });
    EXPECT_TRUE(240 < gone && gone < 360) << gone;
    EXPECT_EQ(role(mixer), "AXGroup");
}

TEST_F(SimulatedAccessibilityTest, IsWellAgainAfterARest) {
    start({.trusted = false, .failOneIn = 1, .vanishOneIn = 1});
    screen().setRunning(false);
    proTools->rest();
    EXPECT_TRUE(screen().isTrusted());
    EXPECT_EQ(windows().size(), 2U);
    EXPECT_EQ(listedNames().size(), 3U);
}

TEST_F(SimulatedAccessibilityTest, FailsAlikeForEqualSeeds) {
    const auto readings = [this] {
        start({.failOneIn = 3, .vanishOneIn = 5}, numberedSession(40));
        return walk(app());
    };
    EXPECT_EQ(readings(), readings());
}

TEST_F(SimulatedAccessibilityTest, CountsTheHandlesThatAreHeld) {
    start();
    {
        const Elements held = windows();
        EXPECT_EQ(screen().liveHandles(), 2);
        const Elements copies = held;
        EXPECT_EQ(screen().liveHandles(), 2);
    }
    EXPECT_EQ(screen().liveHandles(), 0);
}

TEST_F(SimulatedAccessibilityTest, MayShowImmenseWindows) {
    start({.furniture = 10'000}, numberedSession(1000));
    EXPECT_GT(walk(app()), 20'000U);
    EXPECT_EQ(screen().liveHandles(), 0);
}

TEST_F(SimulatedAccessibilityTest, MayBeReadWhileTheSessionIsEdited) {
    start({}, numberedSession(50));
    std::vector<std::unique_ptr<Thread>> readers;
    for (int i = 0; i < 2; ++i)
        readers.push_back(runtime.startThread("reader", [this] {
            for (int round = 0; round < 5; ++round)
                walk(app());
        }));
    for (int id = 1; id <= 50; ++id) {
        proTools->edit([id](SimulatedSession& session) { session.remove(id); });
        runtime.runFor(1ms);
    }
    readers.clear();
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_EQ(screen().liveHandles(), 0);
}

} // namespace
} // namespace lumbrine
