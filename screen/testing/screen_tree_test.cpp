#include "screen/testing/screen_test.h"

namespace lumbrine {
namespace {

using ScreenTreeTest = ScreenTest;

TEST_F(ScreenTreeTest, LinesBecomeElementsWithTheirAttributes) {
    show("# a comment, and an empty line\n"
         "\n"
         "application com.avid.ProTools 501 &app\n"
         "  AXMenuBar=\n"
         "    AXMenuBar &bar\n"
         "  AXWindows:\n"
         "    AXWindow &window AXTitle=\"say \\\"A=B\\\" \\\\ \\n\\t.\" AXMain=true AXModal=false AXSize=?\n"
         "      AXGroup &one\n"
         "      - &two AXParent=@window AXLinked=[@one  @window] AXNone=[]\n"
         "    # indented\n"
         "    AXWindow &last\n"
         "  AXWindow &child");
    const Element window = at("window");
    EXPECT_EQ(screen.value(at("bar"), "AXRole"), MemoryScreen::Value("AXMenuBar"));
    EXPECT_EQ(screen.value(window, "AXTitle"), MemoryScreen::Value("say \"A=B\" \\ \n\t."));
    EXPECT_EQ(screen.value(window, "AXMain"), MemoryScreen::Value(true));
    EXPECT_EQ(screen.value(window, "AXModal"), MemoryScreen::Value(false));
    EXPECT_EQ(screen.value(window, "AXSize"), MemoryScreen::Value(MemoryScreen::OtherKind()));
    EXPECT_EQ(screen.value(window, "AXChildren"), MemoryScreen::Value(std::vector{at("one"), at("two")}));
    EXPECT_EQ(screen.value(at("two"), "AXRole"), std::nullopt);
    EXPECT_EQ(screen.value(at("two"), "AXParent"), MemoryScreen::Value(window));
    EXPECT_EQ(screen.value(at("two"), "AXLinked"), MemoryScreen::Value(std::vector{at("one"), window}));
    EXPECT_EQ(screen.value(at("two"), "AXNone"), MemoryScreen::Value(std::vector<Element>()));
    EXPECT_EQ(screen.value(at("one"), "AXChildren"), std::nullopt);
    EXPECT_EQ(screen.value(at("app"), "AXMenuBar"), MemoryScreen::Value(at("bar")));
    const ElementHandle root = app();
    EXPECT_EQ(std::get<std::vector<ElementHandle>>(*screen.attribute(root, "AXWindows")).size(), 2u);
    EXPECT_TRUE(std::holds_alternative<ElementHandle>(*screen.attribute(root, "AXMenuBar")));
    EXPECT_EQ(std::get<std::vector<ElementHandle>>(*screen.attribute(root, "AXChildren")).size(), 1u);
}

TEST_F(ScreenTreeTest, AMistakeIsReportedWithItsLine) {
    const auto mistake = [](const std::string& lines) {
        MemoryScreen other;
        const auto labels = showTree(other, "application a 1\n" + lines);
        return labels ? "" : labels.error();
    };
    EXPECT_EQ(mistake("AXWindow"), "line 2: not below an application");
    EXPECT_EQ(mistake("application b x"), "line 2: not a process identifier");
    EXPECT_EQ(mistake("application b 2 3"), "line 2: not a label");
    EXPECT_EQ(mistake(" AXWindow"), "line 2: not one step of two spaces deeper");
    EXPECT_EQ(mistake("    AXWindow"), "line 2: not one step of two spaces deeper");
    EXPECT_EQ(mistake("  AXWindows:\n    AXMore:"), "line 3: an attribute of no element");
    EXPECT_EQ(mistake("  AXBar=\n    AXA\n    AXB"), "line 4: a second element where there can be one");
    EXPECT_EQ(mistake("  AXA &a\n  AXB &a"), "line 3: a label for the second time");
    EXPECT_EQ(mistake("  AXA title"), "line 2: not an attribute");
    EXPECT_EQ(mistake("  AXA AXTitle=yes"), "line 2: not a value");
    EXPECT_EQ(mistake("  AXA AXTitle=\"yes"), "line 2: a text without an end");
    EXPECT_EQ(mistake("  AXA AXTitle=\"yes\\"), "line 2: a text without an end");
    EXPECT_EQ(mistake("  AXA AXList=[@a"), "line 2: a list without an end");
    EXPECT_EQ(mistake("  AXA AXList=[a]"), "line 2: a list of something else than elements");
    EXPECT_EQ(mistake("  AXA AXParent=@b\n  AXC"), "line 2: no element is labelled b");
    EXPECT_EQ(mistake("  AXA"), "");
}

} // namespace
} // namespace lumbrine
