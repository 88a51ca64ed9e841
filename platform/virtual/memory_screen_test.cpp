#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/virtual/memory_screen.h"
#include "platform/virtual/still_runtime.h"

#include <array>

namespace lumbrine {
namespace {

using Element = MemoryScreen::Element;
using Handles = std::vector<ElementHandle>;

class MemoryScreenTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(screen.liveHandles(), 0); }

    ElementHandle app() { return screen.applicationElement(7); }

    template <typename Kind>
    std::optional<Kind> read(const ElementHandle& element, std::string_view name) {
        const std::optional<AttributeValue> value = screen.attribute(element, name);
        if (!value || !std::holds_alternative<Kind>(*value)) return std::nullopt;
        return std::get<Kind>(*value);
    }

    ElementHandle only(const ElementHandle& element, std::string_view name) {
        const auto list = read<Handles>(element, name);
        return list && list->size() == 1 ? list->front() : nullptr;
    }

    MemoryScreen screen;
    const Element root = screen.launch("com.avid.ProTools", 7);
};

TEST_F(MemoryScreenTest, FindsTheFirstRunningApplicationOfABundle) {
    screen.launch("com.avid.ProTools", 8);
    screen.launch("com.example.Other", 9);
    EXPECT_EQ(screen.runningApplication("com.avid.ProTools"), 7);
    EXPECT_EQ(screen.runningApplication("com.example.Other"), 9);
    EXPECT_EQ(screen.runningApplication("com.avid"), std::nullopt);
    screen.quit(7);
    EXPECT_EQ(screen.runningApplication("com.avid.ProTools"), 8);
}

TEST_F(MemoryScreenTest, GivesEachKindOfValueAsItIs) {
    const Element child = screen.add({{"AXTitle", "Zoë\n"}});
    screen.set(root, "AXMenuBar", child);
    screen.set(root, "AXWindows", std::vector{child, child});
    screen.set(root, "AXChildren", std::vector<Element>());
    screen.set(root, "AXHidden", false);
    screen.set(root, "AXPosition", MemoryScreen::OtherKind());
    EXPECT_EQ(read<std::string>(*read<ElementHandle>(app(), "AXMenuBar"), "AXTitle"), "Zoë\n");
    EXPECT_EQ(read<Handles>(app(), "AXWindows")->size(), 2u);
    EXPECT_EQ(read<Handles>(app(), "AXChildren"), Handles());
    EXPECT_EQ(read<bool>(app(), "AXHidden"), false);
    EXPECT_EQ(screen.attribute(app(), "AXPosition"), std::nullopt);
    EXPECT_EQ(screen.attribute(app(), "AXTitle"), std::nullopt);
    screen.unset(root, "AXHidden");
    EXPECT_EQ(screen.attribute(app(), "AXHidden"), std::nullopt);
}

TEST_F(MemoryScreenTest, OfAProgramThatDoesNotRunEveryReadFails) {
    const ElementHandle nobody = screen.applicationElement(8);
    ASSERT_NE(nobody, nullptr);
    EXPECT_EQ(screen.attribute(nobody, "AXRole"), std::nullopt);
    EXPECT_FALSE(screen.perform(nobody, "AXPress"));
}

TEST_F(MemoryScreenTest, AnElementThatIsGoneTakesItsChildrenWithItAndFailsItsReads) {
    const Element leaf = screen.add({{"AXRole", "AXButton"}, {"AXParent", root}});
    const Element window = screen.add({{"AXRole", "AXWindow"}, {"AXParent", root}});
    screen.append(window, "AXChildren", leaf);
    screen.append(root, "AXWindows", window);
    const ElementHandle windowHandle = only(app(), "AXWindows");
    const ElementHandle leafHandle = only(windowHandle, "AXChildren");
    EXPECT_EQ(read<std::string>(leafHandle, "AXRole"), "AXButton");
    screen.remove(window);
    EXPECT_EQ(screen.attribute(windowHandle, "AXRole"), std::nullopt);
    EXPECT_EQ(screen.attribute(leafHandle, "AXRole"), std::nullopt);
    EXPECT_FALSE(screen.perform(leafHandle, "AXPress"));
    screen.set(window, "AXRole", "AXWindow");
    EXPECT_EQ(screen.attribute(only(app(), "AXWindows"), "AXRole"), std::nullopt);
    EXPECT_EQ(screen.value(window, "AXRole"), std::nullopt);
}

TEST_F(MemoryScreenTest, AProgramThatEndsTakesEverythingWithItHoweverItIsReached) {
    const Element window = screen.add({{"AXRole", "AXWindow"}});
    screen.append(root, "AXWindows", window);
    screen.append(window, "AXChildren", window); // a circle
    const ElementHandle handle = only(app(), "AXWindows");
    screen.quit(7);
    EXPECT_EQ(screen.attribute(handle, "AXRole"), std::nullopt);
}

TEST_F(MemoryScreenTest, WithoutTrustNothingIsReadOrDone) {
    screen.set(root, "AXTitle", "Pro Tools");
    EXPECT_TRUE(screen.isTrusted());
    EXPECT_TRUE(screen.isTrustedOrPrompt());
    EXPECT_EQ(screen.prompts(), 0);
    screen.setTrusted(false);
    EXPECT_FALSE(screen.isTrusted());
    EXPECT_EQ(screen.prompts(), 0);
    EXPECT_FALSE(screen.isTrustedOrPrompt());
    EXPECT_EQ(screen.prompts(), 1);
    EXPECT_EQ(screen.attribute(app(), "AXTitle"), std::nullopt);
    EXPECT_FALSE(screen.perform(app(), "AXPress"));
    screen.setTrusted(true);
    EXPECT_EQ(read<std::string>(app(), "AXTitle"), "Pro Tools");
    EXPECT_TRUE(screen.perform(app(), "AXPress"));
}

TEST_F(MemoryScreenTest, TheWatcherOfReadsChoosesWhichFailAndMayChangeTheTree) {
    const Element child = screen.add({{"AXTitle", "one"}});
    screen.append(root, "AXChildren", child);
    screen.set(root, "AXTitle", "app");
    screen.watchReads([&](const MemoryScreen::Read& read) {
        if (read.number == 3) screen.set(child, "AXTitle", "two");
        return !read.asksFor("AXTitle") || read.element != root;
    });
    EXPECT_EQ(screen.attribute(app(), "AXTitle"), std::nullopt);
    const ElementHandle handle = only(app(), "AXChildren");
    EXPECT_EQ(read<std::string>(handle, "AXTitle"), "two");
    EXPECT_EQ(screen.reads(), 3u);
    screen.watchReads(nullptr);
    EXPECT_EQ(read<std::string>(app(), "AXTitle"), "app");
}

TEST_F(MemoryScreenTest, TheWatcherOfActionsIsCalledAndAnswers) {
    std::vector<std::string> told;
    screen.watchActions([&](Element element, std::string_view action) {
        told.push_back(std::to_string(element.number) + " " + std::string(action));
        return action == "AXPress";
    });
    EXPECT_TRUE(screen.perform(app(), "AXPress"));
    EXPECT_FALSE(screen.perform(app(), "AXShowMenu"));
    const std::string number = std::to_string(root.number);
    EXPECT_EQ(told, (std::vector<std::string>{number + " AXPress", number + " AXShowMenu"}));
}

TEST_F(MemoryScreenTest, AnswersSeveralAttributesByOneRead) {
    screen.set(root, "AXTitle", "Pro Tools");
    screen.set(root, "AXHidden", false);
    const auto values = screen.attributes(app(), std::array<std::string_view, 3>{"AXHidden", "AXRole", "AXTitle"});
    ASSERT_TRUE(values);
    EXPECT_EQ(*values, (std::vector<std::optional<AttributeValue>>{false, std::nullopt, "Pro Tools"}));
    EXPECT_EQ(screen.reads(), 1u);
}

TEST_F(MemoryScreenTest, ASlowProgramAnswersLateOrTooLate) {
    screen.set(root, "AXTitle", "Pro Tools");
    int actions = 0;
    screen.watchActions([&](Element, std::string_view) { return ++actions > 0; });
    StillRuntime clock;
    const auto title = [&] { return screen.attributes(app(), std::array<std::string_view, 1>{"AXTitle"}); };

    screen.answerAfter(clock, Accessibility::answerTime);
    EXPECT_TRUE(title());
    EXPECT_TRUE(screen.perform(app(), "AXPress"));
    EXPECT_EQ(clock.now() - TimePoint{}, 2 * Accessibility::answerTime);

    screen.answerAfter(clock, seconds(6));
    EXPECT_EQ(title(), std::unexpected(ScreenFailure::noAnswer));
    EXPECT_FALSE(screen.perform(app(), "AXPress"));
    EXPECT_EQ(actions, 2);

    screen.stopAnswering(clock);
    EXPECT_EQ(title(), std::unexpected(ScreenFailure::noAnswer));
    EXPECT_FALSE(screen.perform(app(), "AXPress"));
    EXPECT_EQ(actions, 2);
    EXPECT_EQ(clock.now() - TimePoint{}, 6 * Accessibility::answerTime);
}

TEST_F(MemoryScreenTest, ASystemThatRefusesSaysAllTheSameThatItIsTrusted) {
    screen.setRefusing(true);
    EXPECT_TRUE(screen.isTrusted());
    EXPECT_EQ(screen.attributes(app(), std::array<std::string_view, 1>{"AXTitle"}),
              std::unexpected(ScreenFailure::refused));
    EXPECT_FALSE(screen.perform(app(), "AXPress"));
}

TEST_F(MemoryScreenTest, CountsCallsReadsAndTheHandlesThatAreHeld) {
    const Element child = screen.add({});
    screen.set(root, "AXChildren", std::vector{child, child, child});
    ElementHandle handle = app();
    const ElementHandle copy = handle;
    EXPECT_EQ(screen.liveHandles(), 1);
    {
        const auto children = screen.attribute(handle, "AXChildren");
        EXPECT_EQ(screen.liveHandles(), 4);
    }
    handle = nullptr;
    EXPECT_EQ(screen.liveHandles(), 1);
    EXPECT_EQ(screen.reads(), 1u);
    EXPECT_EQ(screen.calls(), 2u);
}

TEST_F(MemoryScreenTest, ManyThreadsMayReadWhileTheTreeChanges) {
    const Element list = screen.add({});
    screen.set(root, "AXChildren", std::vector{list});
    {
        RunLoop loop;
        RealRuntime runtime(loop);
        std::vector<std::unique_ptr<Thread>> readers;
        for (int i = 0; i < 3; ++i)
            readers.push_back(runtime.startThread("reader", [&] {
                for (int n = 0; n < 2'000; ++n)
                    if (const ElementHandle child = only(app(), "AXChildren")) screen.attribute(child, "AXChildren");
            }));
        for (int n = 0; n < 500; ++n) {
            const Element added = screen.add({{"AXRole", "AXRow"}});
            screen.append(list, "AXChildren", added);
            if (n % 7 == 0) screen.remove(added);
        }
    }
    EXPECT_EQ(screen.reads(), 12'000u);
}

} // namespace
} // namespace lumbrine
