#include "platform/portable/no_accessibility.h"

namespace lumbrine {
namespace {

TEST(NoAccessibility, IsNotTrustedHoweverItIsAsked) {
    NoAccessibility screen;
    EXPECT_FALSE(screen.isTrusted());
    EXPECT_FALSE(screen.isTrustedOrPrompt());
    EXPECT_FALSE(screen.isTrusted());
}

TEST(NoAccessibility, KnowsNoApplicationAndReadsAndPressesNothing) {
    NoAccessibility screen;
    EXPECT_EQ(screen.runningApplication("com.avid.ProTools"), std::nullopt);
    const ElementHandle application = screen.applicationElement(1);
    ASSERT_NE(application, nullptr);
    EXPECT_EQ(screen.attribute(application, "AXWindows"), std::nullopt);
    EXPECT_FALSE(screen.perform(application, "AXPress"));
}

} // namespace
} // namespace lumbrine
