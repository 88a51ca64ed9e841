#include "platform/virtual/virtual_runtime.h"
#include "remote/script_runner.h"

#include <chrono>

namespace lumbrine::remote {
namespace {

using namespace std::chrono_literals;

ScriptStep sends(std::uint8_t byte) {
    return SendStep{{byte}};
}

ScriptStep expects(std::string_view pattern) {
    return ExpectStep{*Expectation::of(pattern)};
}

class ScriptRunnerTest : public ::testing::Test {
protected:
    void run(std::vector<ScriptStep> steps, bool needsControl = false) {
        Script script{std::move(steps), 2s, needsControl};
        runner = std::make_unique<ScriptRunner>(runtime, std::move(script), Bilingual(false),
                                                [this](const Bytes& datagram) { sent.push_back(datagram[0]); });
        runner->onEnd = [this](const std::string& failure) { endings.push_back(failure); };
        runner->start();
    }

    void beginWith(const std::string& line) {
        runner->hear(line);
        runtime.runFor(100ms);
    }

    VirtualRuntime runtime;
    std::unique_ptr<ScriptRunner> runner;
    Bytes sent;
    std::vector<std::string> endings;
};

const std::vector<std::string> success{""};

TEST_F(ScriptRunnerTest, BeginsAMomentAfterTheFirstAnswer) {
    run({sends(1)});
    runtime.runFor(1s);
    runner->hear("pong");
    runtime.runFor(99ms);
    EXPECT_TRUE(sent.empty());
    runtime.runFor(1ms);
    EXPECT_EQ(sent, Bytes{1});
    EXPECT_EQ(endings, success);
}

TEST_F(ScriptRunnerTest, FailsWhenNothingAnswersInTime) {
    run({sends(1)});
    runtime.runFor(1999ms);
    EXPECT_TRUE(endings.empty());
    runtime.runFor(1ms);
    EXPECT_EQ(endings, std::vector<std::string>{"nothing answered within 2 s"});
    beginWith("pong");
    EXPECT_TRUE(sent.empty());
}

TEST_F(ScriptRunnerTest, WaitsForControlWhenItNeedsIt) {
    run({sends(1)}, true);
    beginWith("busy");
    EXPECT_TRUE(sent.empty());
    beginWith("state connected");
    EXPECT_EQ(sent, Bytes{1});
}

TEST_F(ScriptRunnerTest, GoesOnOnceTheExpectationIsMet) {
    run({sends(1), expects("fader 3"), sends(2)});
    beginWith("pong");
    runner->hear("fader 2 0.5000");
    EXPECT_EQ(sent, Bytes{1});
    runner->hear("fader 3 0.5000");
    EXPECT_EQ(sent, (Bytes{1, 2}));
    EXPECT_EQ(endings, success);
}

TEST_F(ScriptRunnerTest, FailsWhenAnExpectationIsNotMetInTime) {
    run({expects("fader 3 ~0.5")});
    beginWith("pong");
    runner->hear("fader 3 0.6000");
    runtime.runFor(1999ms);
    EXPECT_TRUE(endings.empty());
    runtime.runFor(1ms);
    EXPECT_EQ(endings, std::vector<std::string>{"not met within 2 s: fader 3 ~0.5 (the last was: fader 3 0.6000)"});
}

TEST_F(ScriptRunnerTest, SaysWhenNothingOfTheKindCame) {
    run({expects("busy")});
    beginWith("pong");
    runtime.runFor(2s);
    EXPECT_EQ(endings, std::vector<std::string>{"not met within 2 s: busy (nothing of the kind came)"});
}

TEST_F(ScriptRunnerTest, SaysWhenAnotherClientIsInControlInstead) {
    run({expects("fader 3")});
    beginWith("state busy");
    runner->hear("busy");
    runtime.runFor(2s);
    EXPECT_EQ(endings, std::vector<std::string>{"not met within 2 s: fader 3 (nothing of the kind came; state busy)"});
}

TEST_F(ScriptRunnerTest, LooksAtWhatCameBeforeTheExpectation) {
    run({expects("bank first=1")});
    runner->hear("pong");
    runner->hear("bank first=1 tracks=24 strips=8");
    runtime.runFor(100ms);
    EXPECT_EQ(endings, success);
}

TEST_F(ScriptRunnerTest, DoesNotLookAtWhatCameBeforeTheLastSending) {
    run({WaitStep{1s}, sends(1), expects("fader 3")});
    beginWith("pong");
    runner->hear("fader 3 0.5000");
    runtime.runFor(1s);
    EXPECT_EQ(sent, Bytes{1});
    EXPECT_TRUE(endings.empty());
    runner->hear("fader 3 0.5000");
    EXPECT_EQ(endings, success);
}

TEST_F(ScriptRunnerTest, MeetsExpectationsInARowInTheirOrder) {
    run({expects("transport play=on"), expects("transport play=off")});
    beginWith("pong");
    runner->hear("transport play=off record=off");
    runner->hear("transport play=on record=off");
    EXPECT_TRUE(endings.empty());
    runner->hear("transport play=off record=off");
    EXPECT_EQ(endings, success);
}

TEST_F(ScriptRunnerTest, GivesEveryExpectationTheWholeTime) {
    run({expects("fader 1"), expects("fader 2")});
    beginWith("pong");
    runtime.runFor(1900ms);
    runner->hear("fader 1 0.0000");
    runtime.runFor(1900ms);
    EXPECT_TRUE(endings.empty());
    runner->hear("fader 2 0.0000");
    EXPECT_EQ(endings, success);
}

TEST_F(ScriptRunnerTest, Waits) {
    run({sends(1), WaitStep{5s}, sends(2)});
    beginWith("pong");
    runtime.runFor(4999ms);
    EXPECT_EQ(sent, Bytes{1});
    runtime.runFor(1ms);
    EXPECT_EQ(sent, (Bytes{1, 2}));
}

TEST_F(ScriptRunnerTest, EndsOnce) {
    run({expects("pong")});
    beginWith("pong");
    runner->hear("pong");
    runtime.runFor(10s);
    EXPECT_EQ(endings, success);
}

TEST_F(ScriptRunnerTest, RunsNothingOnceItIsGone) {
    run({sends(1)});
    runner->hear("pong");
    runner.reset();
    runtime.runFor(10s);
    EXPECT_TRUE(sent.empty());
    EXPECT_TRUE(endings.empty());
}

} // namespace
} // namespace lumbrine::remote
