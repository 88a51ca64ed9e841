// Threads that pause, a main thread that is late for its timers, and a computer that sleeps.
#include "platform/virtual/virtual_runtime.h"

#include <set>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

// How late a thread that wakes up every 10 ms is, over 20 s.
struct Lateness {
    Duration worst = Duration::zero();
    int times = 0;
};

Lateness latenessOf(VirtualRuntime& runtime, const std::string& name) {
    Lateness seen;
    const auto thread = runtime.startThread(name, [&] {
        while (runtime.now() < TimePoint{20s}) {
            const TimePoint asked = runtime.now() + 10ms;
            runtime.sleepFor(10ms);
            runtime.yield("work");
            const Duration late = runtime.now() - asked;
            if (late > Duration::zero()) ++seen.times;
            seen.worst = std::max(seen.worst, late);
        }
    });
    runtime.runFor(21s);
    return seen;
}

TEST(VirtualStandstill, HoldsAThreadUpForATimeBetweenItsLimitsAboutAsOftenAsAsked) {
    VirtualRuntime runtime({.standstill = {.every = 1s, .shortest = 20ms, .longest = 500ms}});
    const Lateness seen = latenessOf(runtime, "worker");
    EXPECT_GE(seen.worst, 20ms);
    EXPECT_LE(seen.worst, 500ms);
    EXPECT_GT(seen.times, 5);
    EXPECT_LT(seen.times, 40);
}

TEST(VirtualStandstill, MeetsTheThreadsThatItIsMeantFor) {
    VirtualRuntime runtime(
        {.standstill = {.every = 1s, .shortest = 20ms, .longest = 500ms, .meets = [](std::string_view name) {
                            return name == "slow";
                        }}});
    EXPECT_EQ(latenessOf(runtime, "quick").times, 0);
}

TEST(VirtualStandstill, LetsTheOthersGoOn) {
    VirtualRuntime runtime(
        {.standstill = {.every = 50ms, .shortest = 500ms, .longest = 500ms, .meets = [](std::string_view name) {
                            return name == "slow";
                        }}});
    const auto slow = runtime.startThread("slow", [&] {
        for (int i = 0; i < 100; ++i)
            runtime.sleepFor(1ms);
    });
    EXPECT_EQ(latenessOf(runtime, "quick").times, 0);
}

TEST(VirtualStandstill, MakesTheMainThreadLateForItsOwnJobsOnly) {
    VirtualRuntime runtime({.mainStandstill = {.every = 2s, .shortest = 1s, .longest = 4s}});
    int ticks = 0;
    const auto timer = runtime.repeatOnMain(100ms, [&] { ++ticks; });
    EXPECT_EQ(latenessOf(runtime, "worker").times, 0);
    EXPECT_LT(ticks, 150);
    EXPECT_GT(ticks, 20);
}

TEST(VirtualStandstill, NeverHoldsUpWhatATestDoesBetweenTwoRuns) {
    VirtualRuntime runtime({.mainStandstill = {.every = 1ms, .shortest = 1s, .longest = 1s}});
    runtime.runFor(100ms);
    const TimePoint before = runtime.now();
    for (int i = 0; i < 100; ++i)
        runtime.yield("a test");
    EXPECT_EQ(runtime.now(), before);
}

TEST(VirtualStandstill, EndsWhenAskedTo) {
    VirtualRuntime runtime({.standstill = {.every = 1s, .shortest = 20ms, .longest = 500ms},
                            .mainStandstill = {.every = 1s, .shortest = 20ms, .longest = 500ms}});
    runtime.endStandstills();
    EXPECT_EQ(latenessOf(runtime, "worker").times, 0);
    EXPECT_EQ(runtime.now(), TimePoint{21s});
}

TEST(VirtualStandstill, HappensAtTheSameTimesWithTheSameSeed) {
    const auto run = [](std::uint64_t seed) {
        VirtualRuntime runtime({.seed = seed, .standstill = {.every = 1s, .shortest = 20ms, .longest = 500ms}});
        const Lateness seen = latenessOf(runtime, "worker");
        return std::pair(seen.worst, runtime.traceHash());
    };
    std::set<std::pair<Duration, std::uint64_t>> runs;
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        EXPECT_EQ(run(seed), run(seed));
        runs.insert(run(seed));
    }
    EXPECT_EQ(runs.size(), 10u);
}

TEST(VirtualStandstill, DoesNotKeepTheRuntimeFromEnding) {
    VirtualRuntime runtime({.standstill = {.every = 1ms, .shortest = 500ms, .longest = 500ms}});
    runtime.background(Priority::normal, [&] {
        for (int i = 0; i < 1000; ++i)
            runtime.sleepFor(1ms);
    });
    runtime.runFor(100ms);
    const auto queue = runtime.serialQueue("queue", Priority::normal);
    queue->post([&] { runtime.yield("work"); });
}

// ---- A main thread that was busy

std::string orderAfterABusySecond(TimerOrder order) {
    VirtualRuntime runtime({.timerOrder = order});
    std::string ran;
    const auto timer = runtime.repeatOnMain(400ms, [&] { ran += "tick "; });
    runtime.background(Priority::normal, [&] {
        runtime.sleepFor(500ms);
        runtime.postMain([&] { ran += "posted "; });
    });
    runtime.sleepFor(1s);
    runtime.runUntilIdle();
    return ran;
}

TEST(VirtualTimerOrder, PutsALateTimerWhereItBecameDue) {
    EXPECT_EQ(orderAfterABusySecond(TimerOrder::whenDue), "tick posted ");
}

TEST(VirtualTimerOrder, PutsALateTimerAfterWhatWasPostedWhenAskedTo) {
    EXPECT_EQ(orderAfterABusySecond(TimerOrder::whenSeen), "posted tick ");
}

// ---- A machine that sleeps

TEST(VirtualMachineSleep, LetsTheClockJumpAndMakesEverythingLate) {
    VirtualRuntime runtime;
    std::vector<TimePoint> ticks;
    const auto timer = runtime.repeatOnMain(400ms, [&] { ticks.push_back(runtime.now()); });
    TimePoint awake;
    runtime.background(Priority::normal, [&] {
        runtime.sleepFor(1s);
        awake = runtime.now();
    });
    runtime.runFor(500ms);
    runtime.sleepMachine(10min);
    EXPECT_EQ(runtime.now(), TimePoint{10min + 500ms});
    runtime.runFor(100ms);
    EXPECT_EQ(awake, TimePoint{10min + 500ms});
    EXPECT_EQ(ticks, (std::vector{TimePoint{400ms}, TimePoint{10min + 500ms}}));
    runtime.runFor(300ms);
    EXPECT_EQ(ticks.size(), 3u);
    ASSERT_EQ(runtime.pauses().size(), 1u);
    EXPECT_EQ(runtime.pauses()[0].from, TimePoint{500ms});
    EXPECT_EQ(runtime.pauses()[0].until, TimePoint{10min + 500ms});
}

} // namespace
} // namespace lumbrine
