// One program asks another one on the same computer.
#include "platform/linux/local_questions.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <future>
#include <utility>

namespace lumbrine {
namespace {

class LocalQuestionsTest : public testing::Test {
protected:
    // Connects, and says nothing.
    int connected() const {
        const std::string whole = name + "-" + std::to_string(::geteuid());
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path + 1, whole.data(), whole.size());
        const int fd = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + whole.size());
        EXPECT_EQ(::connect(fd, reinterpret_cast<const sockaddr*>(&address), length), 0);
        return fd;
    }

    const std::string name = "lumbrine-test-" + std::to_string(::getpid());
};

void echo(const std::string& question, const LocalQuestions::Reply& reply) {
    reply("You asked: " + question);
}

TEST_F(LocalQuestionsTest, AreAnswered) {
    const LocalQuestions questions(name, echo);
    EXPECT_EQ(askLocally(name, "how", seconds(2)), "You asked: how");
    EXPECT_EQ(askLocally(name, "why", seconds(2)), "You asked: why");
}

TEST_F(LocalQuestionsTest, FindNobodyWhereNobodyIs) {
    EXPECT_EQ(askLocally(name, "how", seconds(2)), std::unexpected(NoAnswer::nobodyThere));
    {
        const LocalQuestions questions(name, echo);
    }
    EXPECT_EQ(askLocally(name, "how", seconds(2)), std::unexpected(NoAnswer::nobodyThere));
}

TEST_F(LocalQuestionsTest, GetNoAnswerFromAProgramThatForgetsThem) {
    const LocalQuestions questions(name, [](const std::string&, const LocalQuestions::Reply&) {});
    EXPECT_EQ(askLocally(name, "how", seconds(2)), std::unexpected(NoAnswer::silent));
}

TEST_F(LocalQuestionsTest, StayWithTheProgramThatHadTheNameFirst) {
    const LocalQuestions first(name, echo);
    const LocalQuestions second(name, [](const std::string&, const LocalQuestions::Reply& reply) { reply("no"); });
    EXPECT_EQ(askLocally(name, "how", seconds(2)), "You asked: how");
}

TEST_F(LocalQuestionsTest, AreNotHeldUpForLongBySomebodyWhoSaysNothing) {
    const LocalQuestions questions(name, echo);
    const int mute = connected();
    EXPECT_EQ(askLocally(name, "how", seconds(2)), "You asked: how");
    ::close(mute);
}

TEST_F(LocalQuestionsTest, AreCutAtTheirLongest) {
    const LocalQuestions questions(name, echo);
    const auto answer = askLocally(name, std::string(1000, 'x'), seconds(2));
    EXPECT_EQ(answer, "You asked: " + std::string(LocalQuestions::longestQuestion, 'x'));
}

TEST_F(LocalQuestionsTest, MayBeAnsweredAfterTheOfferHasEnded) {
    std::promise<LocalQuestions::Reply> kept;
    {
        const LocalQuestions questions(
            name, [&](const std::string&, LocalQuestions::Reply reply) { kept.set_value(std::move(reply)); });
        EXPECT_EQ(askLocally(name, "how", seconds(0.01)), std::unexpected(NoAnswer::silent));
    }
    kept.get_future().get()("too late");
}

} // namespace
} // namespace lumbrine
