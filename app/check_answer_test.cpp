#include "app/check_answer.h"

namespace lumbrine {
namespace {

constexpr Bilingual plainEnglish(false);

PublishedState brokenState() {
    PublishedState published;
    published.health.port = 52700;
    published.health.udp = {.state = LinkHealth::State::down, .detail = "bind: Address already in use"};
    published.health.announcement = {.state = LinkHealth::State::up, .detail = "Studio"};
    return published;
}

TEST(CheckAnswer, ComesBackAsItWasGiven) {
    const PublishedState published = brokenState();
    const std::string answer =
        answerTo(checkQuestion(plainEnglish), {.published = published}, HostSystem::linuxDesktop);
    EXPECT_EQ(readAnswer(answer),
              (CheckAnswer{.anyWrong = true,
                           .announcedAs = "Studio",
                           .list = listed(diagnosis(published, HostSystem::linuxDesktop, plainEnglish)) +
                                   "✓ Standard output: It takes every line of the log.\n"}));
}

TEST(CheckAnswer, SaysThatNobodyReadsTheLog) {
    PublishedState published;
    const auto answer = readAnswer(
        answerTo(checkQuestion(plainEnglish), {.published = published, .outputBacklog = 73}, HostSystem::linuxDesktop));
    ASSERT_TRUE(answer);
    EXPECT_TRUE(answer->anyWrong);
    EXPECT_NE(answer->list.find("✗ Standard output: Nobody reads it: 73 lines"), std::string::npos) << answer->list;
}

TEST(CheckAnswer, IsInTheLanguageOfTheQuestion) {
    const Bilingual ja(true);
    const auto answer = readAnswer(answerTo(checkQuestion(ja), {.published = {}}, HostSystem::linuxDesktop));
    ASSERT_TRUE(answer);
    EXPECT_TRUE(answer->list.starts_with(listed(diagnosis({}, HostSystem::linuxDesktop, ja)))) << answer->list;
    EXPECT_EQ(answer->announcedAs, "");
}

TEST(CheckAnswer, IsNotReadFromAnythingElse) {
    for (const char* text : {"", "\n", "Fine\n\n", "hello", "fine?\nStudio\n"})
        EXPECT_EQ(readAnswer(text), std::nullopt) << text;
    EXPECT_EQ(readAnswer("fine"), CheckAnswer{});
}

TEST(CheckAnswer, AnswersAnyQuestionInEnglish) {
    const PublishedState published;
    EXPECT_EQ(answerTo("\xFF\x00", {.published = published}, HostSystem::linuxDesktop),
              answerTo("check en", {.published = published}, HostSystem::linuxDesktop));
}

} // namespace
} // namespace lumbrine
