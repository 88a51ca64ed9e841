#include "platform/macos/accessibility_ax.h"
#include "platform/macos/testing/accessibility_calls.h"

namespace lumbrine {
namespace {

using fakes::screen;
using Values = std::vector<std::optional<AttributeValue>>;

CFStringRef text(std::u16string units) {
    return new FakeCFString(std::move(units));
}

// An array that holds the only references to its values.
CFArrayRef arrayOf(std::vector<const void*> values) {
    auto* const array = new FakeCFArray(values);
    for (const void* value : values)
        CFRelease(value);
    return array;
}

class AccessibilityAXTest : public ::testing::Test {
protected:
    AccessibilityAXTest() {
        fakes::newScreen();
        objects = fakes::liveObjects();
        screen().applications[42] = element = new FakeElement();
    }
    ~AccessibilityAXTest() override {
        application.reset();
        EXPECT_EQ(screen().openPools, 0);
        EXPECT_EQ(screen().callsOutsidePools, 0);
        fakes::newScreen();
        EXPECT_EQ(fakes::liveObjects(), objects) << "a CoreFoundation object is left";
    }

    // Reads an attribute of the application's element through the back end.
    std::optional<AttributeValue> read(const std::string& name) {
        application = accessibility.applicationElement(42);
        return accessibility.attribute(application, name);
    }

    std::expected<Values, ScreenFailure> readAll(std::vector<std::string_view> names) {
        application = accessibility.applicationElement(42);
        return accessibility.attributes(application, names);
    }

    int objects = 0;
    FakeElement* element = nullptr; // the application's
    AccessibilityAX accessibility{};
    ElementHandle application;
};

TEST_F(AccessibilityAXTest, ReadsText) {
    element->set("AXTitle", text(u"ミックス: 曲 \U0001F3B9"));
    EXPECT_EQ(read("AXTitle"), AttributeValue("ミックス: 曲 \U0001F3B9"));
    element->set("AXValue", text(u""));
    EXPECT_EQ(read("AXValue"), AttributeValue(""));
}

TEST_F(AccessibilityAXTest, ReadsWhatIsSayableOfTextThatIsCutInACharacter) {
    element->set("AXTitle", text(u"a\xD83C z"));
    EXPECT_EQ(read("AXTitle"), AttributeValue("a? z"));
}

TEST_F(AccessibilityAXTest, ReadsBooleans) {
    element->set("AXSelected", kCFBooleanTrue);
    EXPECT_EQ(read("AXSelected"), AttributeValue(true));
    element->set("AXSelected", kCFBooleanFalse);
    EXPECT_EQ(read("AXSelected"), AttributeValue(false));
}

TEST_F(AccessibilityAXTest, ANumberIsNoneOfTheKinds) {
    element->set("AXSelected", new FakeCF(fakes::numberType));
    EXPECT_EQ(read("AXSelected"), std::nullopt);
}

TEST_F(AccessibilityAXTest, ReadsAnElementThatOutlivesItsOwner) {
    auto* const bar = new FakeElement();
    bar->set("AXRole", text(u"AXMenuBar"));
    element->set("AXMenuBar", bar);
    const auto value = read("AXMenuBar");
    ASSERT_TRUE(value && std::holds_alternative<ElementHandle>(*value));
    const auto handle = std::get<ElementHandle>(*value);
    CFRelease(std::exchange(element->attributes["AXMenuBar"], nullptr));
    EXPECT_EQ(accessibility.attribute(handle, "AXRole"), AttributeValue("AXMenuBar"));
}

TEST_F(AccessibilityAXTest, ReadsAListOfElementsInOrder) {
    std::vector<const void*> windows;
    for (const char16_t* const title : {u"Mix", u"Edit"}) {
        auto* const window = new FakeElement();
        window->set("AXTitle", text(title));
        windows.push_back(window);
    }
    element->set("AXWindows", arrayOf(windows));
    const auto value = read("AXWindows");
    ASSERT_TRUE(value && std::holds_alternative<std::vector<ElementHandle>>(*value));
    const auto& handles = std::get<std::vector<ElementHandle>>(*value);
    ASSERT_EQ(handles.size(), 2U);
    EXPECT_EQ(accessibility.attribute(handles[0], "AXTitle"), AttributeValue("Mix"));
    EXPECT_EQ(accessibility.attribute(handles[1], "AXTitle"), AttributeValue("Edit"));
}

TEST_F(AccessibilityAXTest, AnEmptyListIsAList) {
    element->set("AXChildren", arrayOf({}));
    EXPECT_EQ(read("AXChildren"), AttributeValue(std::vector<ElementHandle>{}));
}

TEST_F(AccessibilityAXTest, AListWithAnythingElseInItIsNoListOfElements) {
    element->set("AXChildren", arrayOf({new FakeElement(), text(u"a")}));
    EXPECT_EQ(read("AXChildren"), std::nullopt);
    element->set("AXOther", arrayOf({text(u"a"), new FakeElement()}));
    EXPECT_EQ(read("AXOther"), std::nullopt);
}

TEST_F(AccessibilityAXTest, ReadsNothingThatIsNotThereOrFails) {
    EXPECT_EQ(read("AXTitle"), std::nullopt);
    element->set("AXEmpty", nullptr);
    EXPECT_EQ(read("AXEmpty"), std::nullopt);
    element->set("AXTitle", text(u"Mix"));
    element->errors["AXTitle"] = kAXErrorCannotComplete;
    EXPECT_EQ(read("AXTitle"), std::nullopt);
    EXPECT_EQ(read("\xFF"), std::nullopt);
}

TEST_F(AccessibilityAXTest, ReadsSeveralAttributesByOneMessageEachInItsPlace) {
    element->set("AXRole", text(u"AXTextField"));
    element->set("AXSelected", kCFBooleanTrue);
    EXPECT_EQ(readAll({"AXSelected", "AXValue", "AXRole"}),
              (Values{AttributeValue(true), std::nullopt, AttributeValue("AXTextField")}));
    EXPECT_EQ(screen().messages, 1);
}

TEST_F(AccessibilityAXTest, TellsAnElementThatIsGoneFromAProgramThatDoesNotAnswerAndFromARefusal) {
    element->error = kAXErrorInvalidUIElement;
    EXPECT_EQ(readAll({"AXRole"}), Values(1));
    element->error = kAXErrorCannotComplete;
    EXPECT_EQ(readAll({"AXRole"}), std::unexpected(ScreenFailure::noAnswer));
    element->error = kAXErrorAPIDisabled;
    EXPECT_EQ(readAll({"AXRole"}), std::unexpected(ScreenFailure::refused));
}

TEST_F(AccessibilityAXTest, WaitsASecondForAnyAnswer) {
    const AccessibilityAX another;
    EXPECT_EQ(screen().messagingTimeout, 1.0F);
}

TEST_F(AccessibilityAXTest, KnowsNothingOfAProcessThatIsNotThere) {
    EXPECT_EQ(accessibility.attribute(accessibility.applicationElement(43), "AXWindows"), std::nullopt);
    EXPECT_EQ(accessibility.runningApplication("com.avid.ProTools"), std::nullopt);
    screen().running["com.avid.ProTools"] = 42;
    EXPECT_EQ(accessibility.runningApplication("com.avid.ProTools"), 42);
}

TEST_F(AccessibilityAXTest, PressesAndReportsWhetherItWorked) {
    application = accessibility.applicationElement(42);
    EXPECT_TRUE(accessibility.perform(application, "AXPress"));
    element->errors["AXPress"] = kAXErrorCannotComplete;
    EXPECT_FALSE(accessibility.perform(application, "AXPress"));
    EXPECT_FALSE(accessibility.perform(application, "\xFF"));
    EXPECT_EQ(screen().actions, (std::vector<std::string>{"AXPress", "AXPress"}));
}

TEST_F(AccessibilityAXTest, AsksTheSystemForTrustEachTime) {
    screen().trusted = false;
    EXPECT_FALSE(accessibility.isTrusted());
    EXPECT_EQ(screen().prompts, 0);
    EXPECT_FALSE(accessibility.isTrustedOrPrompt());
    EXPECT_EQ(screen().prompts, 1);
    screen().trusted = true;
    EXPECT_TRUE(accessibility.isTrusted());
    EXPECT_TRUE(accessibility.isTrustedOrPrompt());
    EXPECT_EQ(screen().prompts, 1);
    EXPECT_EQ(screen().settingsOpened, 0);
}

TEST_F(AccessibilityAXTest, OpensTheSettingsWhenReadsAreRefusedThoughTheSystemSaysYes) {
    element->error = kAXErrorAPIDisabled;
    EXPECT_EQ(read("AXWindows"), std::nullopt);
    EXPECT_TRUE(accessibility.isTrusted()); // so that it is tried again
    EXPECT_TRUE(accessibility.isTrustedOrPrompt());
    EXPECT_EQ(screen().prompts, 0);
    EXPECT_EQ(screen().settingsOpened, 1);
}

TEST_F(AccessibilityAXTest, LeavesTheSettingsClosedWhenReadsWorkAgainOrTheSystemSaysNo) {
    element->error = kAXErrorAPIDisabled;
    read("AXWindows");
    screen().trusted = false;
    EXPECT_FALSE(accessibility.isTrustedOrPrompt());
    EXPECT_EQ(screen().prompts, 1);
    screen().trusted = true;
    read("AXWindows");
    element->error = kAXErrorSuccess;
    read("AXWindows");
    EXPECT_TRUE(accessibility.isTrustedOrPrompt());
    EXPECT_EQ(screen().settingsOpened, 0);
}

} // namespace
} // namespace lumbrine
