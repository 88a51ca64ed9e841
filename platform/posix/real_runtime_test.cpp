// These tests check orders, not durations, so that they also pass on a busy machine.
#include "platform/posix/os_thread.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/posix/thread_cache.h"

#include <atomic>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

class RealRuntimeTest : public testing::Test {
protected:
    // Runs the loop until somebody has called `finish`.
    void runLoop() { loop.run(); }
    void finish() { loop.stop(); }

    RunLoop loop;
    RealRuntime runtime{loop};
    std::string order; // of the jobs on the main thread
};

TEST_F(RealRuntimeTest, RunsMainJobsInOrderOnTheMainThread) {
    EXPECT_TRUE(runtime.onMain());
    runtime.postMainAfter(30ms, [&] {
        order += 'd';
        finish();
    });
    runtime.postMainAfter(10ms, [&] { order += 'c'; });
    runtime.postMain([&] { order += 'a'; });
    runtime.postMain([&] { order += 'b'; });
    runLoop();
    EXPECT_EQ(order, "abcd");
}

TEST_F(RealRuntimeTest, NeverRunsADelayedJobEarly) {
    const TimePoint begin = runtime.now();
    TimePoint main, background, queued;
    const auto queue = runtime.serialQueue("com.example.queue", Priority::normal);
    runtime.postMainAfter(20ms, [&] { main = runtime.now(); });
    runtime.backgroundAfter(20ms, [&] {
        background = runtime.now();
        queue->postAfter(20ms, [&] {
            queued = runtime.now();
            finish();
        });
    });
    runLoop();
    EXPECT_GE(main, begin + 20ms);
    EXPECT_GE(background, begin + 20ms);
    EXPECT_GE(queued, begin + 40ms);
}

TEST_F(RealRuntimeTest, RunsAsManyBackgroundJobsBesideEachOtherAsItsCacheHasThreads) {
    constexpr int jobs = ThreadCache::maxThreads;
    std::atomic<int> begun{0};
    std::atomic<int> ended{0};
    for (int i = 0; i < jobs; ++i) {
        runtime.background(Priority::utility, [&] {
            EXPECT_FALSE(runtime.onMain());
            ++begun;
            while (begun < jobs) // ends only if all of them have begun
                runtime.sleepFor(1ms);
            if (++ended == jobs) finish();
        });
    }
    runLoop();
    EXPECT_EQ(ended, jobs);
}

TEST_F(RealRuntimeTest, ReturnsWhatASynchronousHopReturned) {
    runtime.background(Priority::normal, [&] {
        const std::string result = runtime.syncMain([&] { return std::string(runtime.onMain() ? "main" : "other"); });
        runtime.syncMain([&] { order = result; });
        finish();
    });
    runLoop();
    EXPECT_EQ(order, "main");
}

TEST_F(RealRuntimeTest, RunsTheJobsOfASerialQueueOneAfterAnother) {
    const auto queue = runtime.serialQueue("com.example.queue", Priority::utility);
    EXPECT_EQ(queue->label(), "com.example.queue");
    std::string inQueue;
    for (char name = 'a'; name <= 'z'; ++name)
        queue->post([&inQueue, name] { inQueue += name; });
    queue->post([&] { finish(); });
    runLoop();
    EXPECT_EQ(inQueue, "abcdefghijklmnopqrstuvwxyz");
}

TEST_F(RealRuntimeTest, DropsWhatADestroyedQueueHasNotBegunAndWaitsForTheRest) {
    auto queue = runtime.serialQueue("queue", Priority::normal);
    std::atomic<bool> begun{false};
    bool ended = false;
    bool dropped = true;
    queue->post([&] {
        begun = true;
        runtime.sleepFor(20ms);
        ended = true;
    });
    queue->post([&] { dropped = false; });
    queue->postAfter(1h, [&] { dropped = false; });
    while (!begun)
        runtime.sleepFor(1ms);
    queue.reset();
    EXPECT_TRUE(ended);
    EXPECT_TRUE(dropped);
}

TEST_F(RealRuntimeTest, RepeatsUntilTheTimerIsDestroyed) {
    std::unique_ptr<RepeatingTimer> timer;
    timer = runtime.repeatOnMain(2ms, [&] {
        order += 't';
        if (order.size() < 3) return;
        timer.reset();
        runtime.postMainAfter(20ms, [&] { finish(); });
    });
    runLoop();
    EXPECT_EQ(order, "ttt");
}

TEST_F(RealRuntimeTest, DoesNotMakeUpForTicksThatAreLate) {
    int ticks = 0;
    const auto timer = runtime.repeatOnMain(10ms, [&] {
        if (++ticks > 1) return;
        runtime.sleepFor(100ms); // nine more are due meanwhile
        runtime.postMain([&] { runtime.postMain([&] { finish(); }); });
    });
    runLoop();
    EXPECT_LT(ticks, 8);
}

TEST_F(RealRuntimeTest, WaitsForTheEndOfAThreadThatIsDestroyed) {
    bool ended = false;
    auto thread = runtime.startThread("a name that is longer than the system takes", [&] {
        runtime.sleepFor(10ms);
        ended = true;
    });
    thread.reset();
    EXPECT_TRUE(ended);
}

TEST_F(RealRuntimeTest, DoesNotWaitForAThreadThatDestroysItself) {
    std::atomic<bool> made{false};
    std::atomic<bool> ended{false};
    std::unique_ptr<Thread> thread = runtime.startThread("last owner", [&] {
        while (!made)
            runtime.sleepFor(1ms);
        thread.reset();
        ended = true;
    });
    made = true;
    while (!ended)
        runtime.sleepFor(1ms);
}

TEST_F(RealRuntimeTest, KeepsThreadsApartWithItsMutex) {
    Mutex mutex(runtime);
    int count = 0;
    {
        std::vector<std::unique_ptr<Thread>> threads;
        for (int i = 0; i < 4; ++i) {
            threads.push_back(runtime.startThread("counter", [&] {
                for (int round = 0; round < 1000; ++round) {
                    const Lock lock(mutex);
                    ++count;
                }
            }));
        }
    }
    EXPECT_EQ(count, 4000);
}

TEST_F(RealRuntimeTest, EndsSleepsAndHopsWhenItIsShutDown) {
    std::atomic<int> begun{0};
    bool hopped = false;
    auto queue = runtime.serialQueue("queue", Priority::normal);
    auto thread = runtime.startThread("sleeper", [&] {
        ++begun;
        runtime.sleepFor(24h);
    });
    queue->post([&] {
        ++begun;
        EXPECT_EQ(runtime.syncMain([&] {
            hopped = true;
            return 5;
        }),
                  0);
    });
    runtime.background(Priority::normal, [&] {
        ++begun;
        runtime.sleepFor(24h);
    });
    while (begun < 3)
        runtime.sleepFor(1ms);
    runtime.shutDown();
    thread.reset();
    queue.reset();
    EXPECT_FALSE(hopped);
}

TEST_F(RealRuntimeTest, BeginsNothingAfterItIsShutDown) {
    const auto object = std::make_shared<int>(1);
    bool ran = false;
    runtime.shutDown();
    auto queue = runtime.serialQueue("queue", Priority::normal);
    queue->post([&ran, object] { ran = true; });
    runtime.background(Priority::normal, [&ran, object] { ran = true; });
    runtime.backgroundAfter(1ns, [&ran, object] { ran = true; });
    queue.reset();
    EXPECT_FALSE(ran);
}

TEST_F(RealRuntimeTest, GivesEachThreadTheUrgencyOfItsWork) {
    std::atomic<Urgency> receiver, surfaces, service, look, afterwards;
    const auto urgent = runtime.serialQueue("com.example.urgent", Priority::userInitiated);
    const auto patient = runtime.serialQueue("com.example.patient", Priority::utility);
    runtime.startThread("receive", [&] { receiver = urgencyOfThisThread(); });
    urgent->post([&] {
        surfaces = urgencyOfThisThread();
        patient->post([&] {
            service = urgencyOfThisThread();
            runtime.background(Priority::utility, [&] {
                look = urgencyOfThisThread();
                runtime.backgroundAfter(1ms, [&] {
                    afterwards = urgencyOfThisThread();
                    finish();
                });
            });
        });
    });
    runLoop();
    EXPECT_EQ(receiver, Urgency::userInteractive);
    EXPECT_EQ(surfaces, Urgency::userInitiated);
    EXPECT_EQ(service, Urgency::utility);
    EXPECT_EQ(look, Urgency::utility);
    EXPECT_EQ(afterwards, Urgency::normal);
}

} // namespace
} // namespace lumbrine
