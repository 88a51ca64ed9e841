#include "platform/macos/screen_trust.h"

namespace lumbrine {
namespace {

using Outcome = ScreenTrust::Outcome;

TEST(ScreenTrust, IsWhatTheSystemSaysUntilSomethingWasRead) {
    ScreenTrust trust;
    EXPECT_TRUE(trust.judge(true));
    EXPECT_FALSE(trust.judge(false));
}

TEST(ScreenTrust, CountsWhenItIsGivenWhileTheProgramRuns) {
    ScreenTrust trust;
    EXPECT_FALSE(trust.judge(false));
    EXPECT_TRUE(trust.judge(true));
}

TEST(ScreenTrust, IsStaleOnceAReadIsRefusedThoughTheSystemSaysYes) {
    ScreenTrust trust;
    trust.attempted(Outcome::refused);
    EXPECT_TRUE(trust.isStale());
    EXPECT_FALSE(trust.judge(true));
    EXPECT_FALSE(trust.judge(true));
}

TEST(ScreenTrust, IsBackAsSoonAsAReadWorks) {
    ScreenTrust trust;
    trust.attempted(Outcome::refused);
    trust.attempted(Outcome::allowed);
    EXPECT_FALSE(trust.isStale());
    EXPECT_TRUE(trust.judge(true));
}

TEST(ScreenTrust, IsBackWhenTheUserTakesItAwayAndGivesItAgain) {
    ScreenTrust trust;
    trust.attempted(Outcome::refused);
    EXPECT_FALSE(trust.judge(false));
    EXPECT_FALSE(trust.isStale());
    EXPECT_TRUE(trust.judge(true));
}

TEST(ScreenTrust, IsTriedAgainAfterTheUserWasSentToTheSettings) {
    ScreenTrust trust;
    trust.attempted(Outcome::refused);
    trust.userWasAsked();
    EXPECT_TRUE(trust.judge(true));
    trust.attempted(Outcome::refused);
    EXPECT_FALSE(trust.judge(true));
}

} // namespace
} // namespace lumbrine
