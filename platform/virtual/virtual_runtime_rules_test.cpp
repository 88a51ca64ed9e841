// What ends a program in virtual time, and what the report says.
#include "platform/virtual/virtual_runtime.h"

#include <thread>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

class VirtualRuntimeRules : public testing::Test {
protected:
    VirtualRuntimeRules() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    VirtualRuntime runtime{{.seed = 4711, .stepLimit = 1000}};
    Mutex mutex{runtime};
};

using VirtualRuntimeRulesDeathTest = VirtualRuntimeRules;

TEST_F(VirtualRuntimeRulesDeathTest, ReportsADeadlockWithTheSeedAndWhatEachThreadWaitsFor) {
    const auto signal = runtime.makeSignal();
    EXPECT_DEATH(
        {
            runtime.background(Priority::normal, [&] { signal->wait("a reply", std::nullopt); });
            const auto thread = runtime.startThread("receiver", [&] { signal->wait("a datagram", std::nullopt); });
        },
        "deadlock(.|\n)*seed 4711(.|\n)*main: waits for the end of a thread\n"
        "(.|\n)*background 1: waits for a reply\n(.|\n)*receiver: waits for a datagram");
}

TEST_F(VirtualRuntimeRulesDeathTest, ReportsAQueueThatWaitsForTheThreadThatDestroysIt) {
    EXPECT_DEATH(
        {
            auto queue = runtime.serialQueue("queue", Priority::normal);
            queue->post([&] { runtime.syncMain([] {}); });
            runtime.sleepFor(1ms);
            queue.reset();
        },
        "deadlock(.|\n)*main: waits for the running job of queue\n(.|\n)*queue: waits for its job on the main queue");
}

TEST_F(VirtualRuntimeRulesDeathTest, ReportsAMainThreadThatWaitsForEverWhileOthersGoOn) {
    EXPECT_DEATH(
        {
            const auto thread = runtime.startThread("poller", [&] {
                for (;;)
                    runtime.sleepFor(1s);
            });
        },
        "the main thread waits for ever(.|\n)*main: waits for the end of a thread");
}

TEST_F(VirtualRuntimeRulesDeathTest, ReportsALivelockOfAThread) {
    EXPECT_DEATH(
        {
            runtime.background(Priority::normal, [&] {
                for (;;)
                    runtime.yield("a turn");
            });
            runtime.runFor(1s);
        },
        "livelock: 1000 steps(.|\n)*seed 4711");
}

TEST_F(VirtualRuntimeRulesDeathTest, ReportsAMainJobThatPostsItselfForEver) {
    std::function<void()> again = [&] { runtime.postMain(again); };
    EXPECT_DEATH(
        {
            again();
            runtime.runFor(1s);
        },
        "livelock(.|\n)*the last was of main");
}

TEST_F(VirtualRuntimeRules, LetsTheMainThreadDoAsMuchAsItLikesBetweenTwoRuns) {
    for (int i = 0; i < 5000; ++i)
        const Lock lock(mutex);
}

TEST_F(VirtualRuntimeRulesDeathTest, ForbidsToSleepWithAMutexHeld) {
    EXPECT_DEATH(
        {
            const Lock lock(mutex);
            runtime.sleepFor(1ms);
        },
        "main sleeps while it holds a Mutex");
}

TEST_F(VirtualRuntimeRulesDeathTest, ForbidsToHopWithAMutexHeld) {
    EXPECT_DEATH(
        {
            runtime.background(Priority::normal, [&] {
                const Lock lock(mutex);
                runtime.syncMain([] {});
            });
            runtime.runUntilIdle();
        },
        "background 1 hops to the main queue while it holds a Mutex");
}

TEST_F(VirtualRuntimeRulesDeathTest, ForbidsToWaitWithAMutexHeld) {
    const auto signal = runtime.makeSignal();
    EXPECT_DEATH(
        {
            const Lock lock(mutex);
            signal->wait("a test", std::nullopt);
        },
        "main waits for a signal while it holds a Mutex");
}

TEST_F(VirtualRuntimeRulesDeathTest, ForbidsToTakeASecondMutexOrTheSameTwice) {
    Mutex other(runtime);
    EXPECT_DEATH(
        {
            const Lock lock(mutex);
            const Lock second(other);
        },
        "main takes a Mutex while it holds a Mutex");
}

TEST_F(VirtualRuntimeRules, AllowsABackEndsMutexWithinOneThatIsMeantForIt) {
    Mutex outer(runtime, Nesting::overBackEnd);
    Mutex inner(runtime, Nesting::inBackEnd);
    const Lock lock(outer);
    const Lock second(inner);
}

TEST_F(VirtualRuntimeRulesDeathTest, ForbidsABackEndsMutexWithinAnyOther) {
    Mutex inner(runtime, Nesting::inBackEnd);
    EXPECT_DEATH(
        {
            const Lock lock(mutex);
            const Lock second(inner);
        },
        "main takes a Mutex while it holds a Mutex");
}

TEST_F(VirtualRuntimeRulesDeathTest, ForbidsAnyMutexWithinABackEnds) {
    Mutex outer(runtime, Nesting::overBackEnd);
    Mutex inner(runtime, Nesting::inBackEnd);
    EXPECT_DEATH(
        {
            const Lock lock(inner);
            const Lock second(outer);
        },
        "main takes a Mutex while it holds a Mutex");
}

TEST_F(VirtualRuntimeRulesDeathTest, ForbidsAThirdMutex) {
    Mutex outer(runtime, Nesting::overBackEnd);
    Mutex inner(runtime, Nesting::inBackEnd);
    Mutex other(runtime, Nesting::inBackEnd);
    EXPECT_DEATH(
        {
            const Lock lock(outer);
            const Lock second(inner);
            const Lock third(other);
        },
        "main takes a Mutex while it holds a Mutex");
}

TEST_F(VirtualRuntimeRulesDeathTest, ForbidsToEndAJobWithAMutexHeld) {
    EXPECT_DEATH(
        {
            runtime.background(Priority::normal, [&]() LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { mutex.lock(); });
            runtime.runUntilIdle();
        },
        "background 1 ends while it holds a Mutex");
}

TEST_F(VirtualRuntimeRules, AllowsToPostWithAMutexHeld) {
    const auto queue = runtime.serialQueue("queue", Priority::normal);
    int ran = 0;
    {
        const Lock lock(mutex);
        runtime.postMain([&] { ++ran; });
        runtime.background(Priority::normal, [&] { ++ran; });
        queue->post([&] { ++ran; });
    }
    runtime.runUntilIdle();
    EXPECT_EQ(ran, 3);
}

TEST_F(VirtualRuntimeRulesDeathTest, EndsAProgramThatCallsFromAForeignThread) {
    EXPECT_DEATH(std::thread([&] { runtime.postMain([] {}); }).join(), "a thread that is none of the runtime's");
}

} // namespace
} // namespace lumbrine
