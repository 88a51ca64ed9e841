#include "app/check_answer.h"

namespace lumbrine {
namespace {

PublishedState brokenState() {
    PublishedState published;
    published.health.port = 52700;
    published.health.udp = {.state = LinkHealth::State::down, .detail = "bind: Address already in use"};
    published.health.announcement = {.state = LinkHealth::State::up, .detail = "Studio"};
    return published;
}

TEST(CheckAnswer, ComesBackAsItWasGiven) {
    const std::string answer = answerTo(checkQuestion(Bilingual(false)), brokenState(), HostSystem::linuxDesktop);
    EXPECT_EQ(readAnswer(answer),
              (CheckAnswer{.anyWrong = true,
                           .announcedAs = "Studio",
                           .list = listed(diagnosis(brokenState(), HostSystem::linuxDesktop, Bilingual(false)))}));
}

TEST(CheckAnswer, IsInTheLanguageOfTheQuestion) {
    const Bilingual ja(true);
    const auto answer = readAnswer(answerTo(checkQuestion(ja), {}, HostSystem::linuxDesktop));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->list, listed(diagnosis({}, HostSystem::linuxDesktop, ja)));
    EXPECT_EQ(answer->announcedAs, "");
}

TEST(CheckAnswer, IsNotReadFromAnythingElse) {
    for (const char* text : {"", "\n", "Fine\n\n", "hello", "fine?\nStudio\n"})
        EXPECT_EQ(readAnswer(text), std::nullopt) << text;
    EXPECT_EQ(readAnswer("fine"), CheckAnswer{});
}

TEST(CheckAnswer, AnswersAnyQuestionInEnglish) {
    EXPECT_EQ(answerTo("\xFF\x00", {}, HostSystem::linuxDesktop), answerTo("check en", {}, HostSystem::linuxDesktop));
}

} // namespace
} // namespace lumbrine
