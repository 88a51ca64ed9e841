#include "screen/element_access.h"
#include "screen/testing/screen_test.h"

namespace lumbrine {
namespace {

class ElementAccessTest : public ScreenTest {
protected:
    // The AXHelp of the match, which identifies elements in these tests; empty when nothing matches.
    std::string find(const DescendantQuery& query) {
        const auto found = access.firstDescendant(app(), query);
        return found ? access.textAttr(*found, "AXHelp") : "";
    }

    ElementAccess access{screen, clock, std::chrono::seconds(10)};
};

TEST_F(ElementAccessTest, FindsTheFirstRunningProTools) {
    EXPECT_EQ(proToolsApplication(screen), std::nullopt);
    show("application com.avid.ProToolsLE 3\n");
    EXPECT_EQ(proToolsApplication(screen), std::nullopt);
    show("application com.avid.ProTools 501\n"
         "  - AXTitle=\"first\"\n"
         "application com.avid.ProTools 502\n");
    const auto found = proToolsApplication(screen);
    ASSERT_TRUE(found);
    EXPECT_EQ(access.title(access.children(*found).at(0)), "first");
}

TEST_F(ElementAccessTest, AListIsEmptyWhenItIsNotThereOrSomethingElse) {
    show("application com.avid.ProTools 501\n"
         "  AXWindows:\n"
         "    AXWindow AXTitle=\"one\"\n"
         "    AXWindow AXTitle=\"two\"\n"
         "  AXMenuBar=\n"
         "    AXMenuBar AXEmpty=[] AXText=\"AXWindows\" AXFlag=true AXOther=?\n");
    ASSERT_EQ(access.windows(app()).size(), 2u);
    EXPECT_EQ(access.title(access.windows(app())[1]), "two");
    EXPECT_TRUE(access.children(app()).empty());
    EXPECT_TRUE(access.elementList(app(), "AXMenuBar").empty());
    const ElementHandle bar = access.element(app(), "AXMenuBar").value();
    for (const char* attribute : {"AXEmpty", "AXText", "AXFlag", "AXOther", "AXNothing"})
        EXPECT_TRUE(access.elementList(bar, attribute).empty()) << attribute;
}

TEST_F(ElementAccessTest, AStringAFlagAndAnElementAreThereOnlyAsWhatTheyAre) {
    show("application com.avid.ProTools 501\n"
         "  - &self AXText=\"\" AXTrue=true AXFalse=false AXElement=@self AXList=[@self] AXOther=?\n");
    const ElementHandle element = access.children(app()).at(0);
    EXPECT_EQ(asText(access.read(element, {"AXText"})[0]), "");
    EXPECT_EQ(asFlag(access.read(element, {"AXTrue"})[0]), true);
    EXPECT_EQ(asFlag(access.read(element, {"AXFalse"})[0]), false);
    EXPECT_TRUE(access.element(element, "AXElement"));
    for (const char* attribute : {"AXTrue", "AXElement", "AXList", "AXOther", "AXNothing"})
        EXPECT_EQ(asText(access.read(element, {attribute})[0]), std::nullopt) << attribute;
    for (const char* attribute : {"AXText", "AXElement", "AXList", "AXOther", "AXNothing"})
        EXPECT_EQ(asFlag(access.read(element, {attribute})[0]), std::nullopt) << attribute;
    for (const char* attribute : {"AXText", "AXTrue", "AXList", "AXOther", "AXNothing"})
        EXPECT_EQ(access.element(element, attribute), std::nullopt) << attribute;
    EXPECT_EQ(access.textAttr(element, "AXRole"), "");
    EXPECT_EQ(access.title(element), "");
}

TEST_F(ElementAccessTest, LooksThroughALevelInOrderBeforeTheNext) {
    show("application com.avid.ProTools 501\n"
         "  AXGroup\n"
         "    AXGroup\n"
         "      AXButton AXTitle=\"OK\" AXHelp=\"third level\"\n"
         "  AXGroup\n"
         "    AXButton AXTitle=\"OK\" AXHelp=\"second level\"\n"
         "    AXButton AXTitle=\"OK\" AXHelp=\"second level, later\"\n");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"OK"}, .maxDepth = 3}), "second level");
}

TEST_F(ElementAccessTest, LooksNoDeeperThanTheLimitButAlwaysAtTheChildren) {
    show("application com.avid.ProTools 501\n"
         "  AXGroup\n"
         "    AXGroup\n"
         "      AXButton AXTitle=\"3\" AXHelp=\"3\"\n"
         "        AXButton AXTitle=\"4\" AXHelp=\"4\"\n"
         "  AXButton AXTitle=\"1\" AXHelp=\"1\"\n");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"3"}, .maxDepth = 3}), "3");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"4"}, .maxDepth = 3}), "");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"4"}, .maxDepth = 4}), "4");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"3"}, .maxDepth = 2}), "");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"1"}, .maxDepth = 1}), "1");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"1"}, .maxDepth = 0}), "1");
}

TEST_F(ElementAccessTest, NeverFindsTheRootItself) {
    show("application com.avid.ProTools 501\n"
         "  AXButton AXTitle=\"OK\"\n");
    const ElementHandle button = access.children(app()).at(0);
    EXPECT_FALSE(access.firstDescendant(button, {.role = "AXButton", .nameIs = {"OK"}, .maxDepth = 3}));
}

TEST_F(ElementAccessTest, ATitleMatchesByAPartOrAsAWholeUpperAndLowerCaseApart) {
    show("application com.avid.ProTools 501\n"
         "  AXButton AXTitle=\"Not OK\" AXHelp=\"Not OK\"\n"
         "  AXButton AXTitle=\"ok\" AXHelp=\"ok\"\n"
         "  AXRadioButton AXTitle=\"OK\" AXHelp=\"of another role\"\n"
         "  AXButton AXTitle=\"Cancel\" AXHelp=\"Cancel\"\n"
         "  AXButton AXTitle=\"OK\" AXHelp=\"OK\"\n");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"OK"}}), "OK");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"Yes", "Cancel"}}), "Cancel");
    EXPECT_EQ(find({.role = "AXButton", .nameContainsAny = {"OK"}}), "Not OK");
    EXPECT_EQ(find({.role = "AXButton", .nameContainsAny = {"yes", "anc"}}), "Cancel");
    EXPECT_EQ(find({.role = "AXButton", .nameContainsAny = {"anc"}, .nameIs = {"ok"}}), "ok");
    EXPECT_EQ(find({.role = "AXButton", .nameContainsAny = {"k"}, .nameIs = {"Cancel"}}), "ok");
    EXPECT_EQ(find({.role = "AXButton", .nameContainsAny = {"none"}, .nameIs = {"none"}}), "");
}

TEST_F(ElementAccessTest, ARoleAloneIsNoMatch) {
    show("application com.avid.ProTools 501\n"
         "  AXButton AXTitle=\"OK\" AXHelp=\"there\"\n");
    EXPECT_EQ(find({.role = "AXButton"}), "");
}

TEST_F(ElementAccessTest, AFailedReadIsAnEmptyRoleOrTitle) {
    show("application com.avid.ProTools 501\n"
         "  AXButton AXTitle=? AXHelp=\"a button without a title\"\n"
         "  - AXTitle=\"OK\" AXHelp=\"without a role\"\n"
         "    AXButton AXTitle=\"OK\" AXHelp=\"below it\"\n");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"OK"}, .maxDepth = 2}), "below it");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {""}, .maxDepth = 2}), "a button without a title");
    EXPECT_EQ(find({.role = "", .nameIs = {"OK"}, .maxDepth = 2}), "without a role");
}

TEST_F(ElementAccessTest, ACircleEndsAtTheDepth) {
    show("application com.avid.ProTools 501\n"
         "  AXGroup &a AXChildren=[@b]\n"
         "  AXGroup &b AXChildren=[@a @b]\n");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"OK"}, .maxDepth = 3}), "");
    // The application's list; then role with title, and list, of 2 elements and of 3, and the roles of 5.
    EXPECT_EQ(screen.reads(), 1u + 2 * 2 + 2 * 3 + 5);
}

TEST_F(ElementAccessTest, ACircleThatGrowsEndsAtTheLimitOfElements) {
    show("application com.avid.ProTools 501\n"
         "  AXGroup &a AXChildren=[@a @a @a @a @a @a @a @a @a @a]\n");
    EXPECT_EQ(find({.role = "AXButton", .nameIs = {"OK"}, .maxDepth = 1'000'000}), "");
    // The application's list of one; 19,999 lists of ten, and one that would go beyond the limit; each element's role.
    EXPECT_EQ(screen.reads(), 1u + 20'000 + 199'991);
}

TEST_F(ElementAccessTest, TheLimitIsForAllListsTogetherAndNoListIsCutShort) {
    show("application com.avid.ProTools 501\n"
         "  - &half\n"
         "  - &much\n"
         "  - &one AXChildren=[@half]\n");
    screen.set(at("half"), "AXChildren", std::vector(200'000 - 4, at("one")));
    screen.set(at("much"), "AXChildren", std::vector(200'000 + 1, at("one")));
    {
        const std::vector<ElementHandle> three = access.children(app());
        ASSERT_EQ(three.size(), 3u);
        EXPECT_EQ(access.children(three[0]).size(), 200'000 - 4);
        EXPECT_EQ(access.children(three[2]).size(), 1u); // the last one
        EXPECT_TRUE(access.children(three[2]).empty());
    }
    ElementAccess another(screen, clock, std::chrono::seconds(10));
    const std::vector<ElementHandle> three = another.children(app());
    EXPECT_TRUE(another.children(three[1]).empty());
    EXPECT_TRUE(another.children(three[2]).empty());
    EXPECT_EQ(another.title(three[2]), "");
}

TEST_F(ElementAccessTest, PressingIsAnActionEvenIfItFails) {
    show("application com.avid.ProTools 501\n"
         "  AXButton &ok\n");
    std::vector<std::string> actions;
    screen.watchActions([&](Element element, std::string_view action) {
        EXPECT_EQ(element, at("ok"));
        actions.emplace_back(action);
        return false;
    });
    access.press(access.children(app()).at(0));
    EXPECT_EQ(actions, std::vector<std::string>{"AXPress"});
}

} // namespace
} // namespace lumbrine
