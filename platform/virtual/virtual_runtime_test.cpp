#include "platform/virtual/virtual_runtime.h"

#include <set>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

struct Event {
    std::string what;
    Duration at;
    bool operator==(const Event&) const = default;
};

void PrintTo(const Event& event, std::ostream* out) {
    *out << event.what << " at " << inSeconds(event.at) << " s";
}

class VirtualRuntimeTest : public testing::Test {
protected:
    void note(const std::string& what) { events.push_back({what, runtime.now().time_since_epoch()}); }

    VirtualRuntime runtime;
    std::vector<Event> events;
};

TEST_F(VirtualRuntimeTest, StartsItsClockAtZeroAndLetsExactlyTheAskedTimePass) {
    EXPECT_EQ(runtime.now(), TimePoint{});
    runtime.runFor(1h + 1ns);
    EXPECT_EQ(runtime.now(), TimePoint{1h + 1ns});
}

TEST_F(VirtualRuntimeTest, RunsAMainJobAtItsTimeAndNotBefore) {
    runtime.postMainAfter(60ms, [&] { note("job"); });
    runtime.runFor(60ms - 1ns);
    EXPECT_TRUE(events.empty());
    runtime.runFor(1ns);
    EXPECT_EQ(events, (std::vector<Event>{{"job", 60ms}}));
}

TEST_F(VirtualRuntimeTest, RunsMainJobsInTheOrderOfTheirTimesAndOfTheirPosting) {
    runtime.postMainAfter(2ms, [&] { note("c"); });
    runtime.postMainAfter(1ms, [&] { note("b"); });
    runtime.postMain([&] { note("a"); });
    runtime.postMainAfter(2ms, [&] { note("d"); });
    runtime.runFor(2ms);
    EXPECT_EQ(events, (std::vector<Event>{{"a", 0ms}, {"b", 1ms}, {"c", 2ms}, {"d", 2ms}}));
}

TEST_F(VirtualRuntimeTest, RunsAtTheLastInstantAlsoWhatIsOnlyPostedThen) {
    runtime.postMainAfter(
        5ms, [&] { runtime.background(Priority::normal, [&] { runtime.postMain([&] { note("job"); }); }); });
    runtime.runFor(5ms);
    EXPECT_EQ(events, (std::vector<Event>{{"job", 5ms}}));
}

TEST_F(VirtualRuntimeTest, RunsOnMainAtOnceWhenAlreadyThere) {
    runtime.runOnMain([&] { note("direct"); });
    EXPECT_EQ(events.size(), 1u);
    EXPECT_EQ(runtime.syncMain([] { return 7; }), 7);
}

TEST_F(VirtualRuntimeTest, RunsBackgroundJobsElsewhereAndBesideEachOther) {
    for (int i = 0; i < 3; ++i) {
        runtime.background(Priority::utility, [&] {
            EXPECT_FALSE(runtime.onMain());
            runtime.sleepFor(100ms);
            note("job");
        });
    }
    runtime.backgroundAfter(250ms, [&] { note("late"); });
    runtime.runFor(1s);
    EXPECT_EQ(events, (std::vector<Event>{{"job", 100ms}, {"job", 100ms}, {"job", 100ms}, {"late", 250ms}}));
}

int interruptionsOf(std::uint64_t patience) {
    VirtualRuntime runtime({.patience = patience});
    int interruptions = 0;
    bool others = false;
    for (int i = 0; i < 2; ++i) {
        runtime.background(Priority::normal, [&, first = i == 0] {
            for (int step = 0; step < 1000; ++step) {
                others = !first;
                runtime.yield("a step");
                if (first && others) ++interruptions;
            }
        });
    }
    runtime.runFor(1s);
    return interruptions;
}

TEST_F(VirtualRuntimeTest, InterruptsPatientThreadsLessOften) {
    const int impatient = interruptionsOf(1);
    EXPECT_GT(impatient, 300);
    EXPECT_LT(interruptionsOf(16), impatient / 4);
    EXPECT_GT(interruptionsOf(16), 5);
}

TEST_F(VirtualRuntimeTest, SleepsOnTheMainThreadWhileTheOthersGoOn) {
    runtime.background(Priority::normal, [&] {
        runtime.sleepFor(10ms);
        note("background");
    });
    runtime.sleepFor(20ms);
    note("main");
    EXPECT_EQ(events, (std::vector<Event>{{"background", 10ms}, {"main", 20ms}}));
}

TEST_F(VirtualRuntimeTest, WaitsForTheMainThreadInSyncMain) {
    runtime.background(Priority::normal, [&] {
        const int result = runtime.syncMain([&] {
            EXPECT_TRUE(runtime.onMain());
            runtime.sleepFor(3ms);
            return 42;
        });
        note(std::to_string(result));
    });
    runtime.runFor(1s);
    EXPECT_EQ(events, (std::vector<Event>{{"42", 3ms}}));
}

TEST_F(VirtualRuntimeTest, RunsTheJobsOfASerialQueueOneAfterAnother) {
    const auto queue = runtime.serialQueue("com.example.queue", Priority::utility);
    EXPECT_EQ(queue->label(), "com.example.queue");
    queue->postAfter(15ms, [&] { note("due at 15"); });
    queue->postAfter(12ms, [&] { note("due at 12"); });
    for (const char* name : {"first", "second"}) {
        queue->post([&, name] {
            runtime.sleepFor(10ms);
            note(name);
        });
    }
    runtime.runFor(1s);
    EXPECT_EQ(events,
              (std::vector<Event>{{"first", 10ms}, {"second", 20ms}, {"due at 12", 20ms}, {"due at 15", 20ms}}));
}

TEST_F(VirtualRuntimeTest, DropsWhatADestroyedQueueHasNotBegunAndWaitsForTheRest) {
    auto queue = runtime.serialQueue("queue", Priority::normal);
    queue->post([&] {
        runtime.sleepFor(10ms);
        note("running");
    });
    queue->post([&] { note("waiting"); });
    queue->postAfter(5ms, [&] { note("delayed"); });
    runtime.runFor(1ms);
    queue.reset();
    EXPECT_EQ(runtime.now(), TimePoint{10ms});
    runtime.runFor(1s);
    EXPECT_EQ(events, (std::vector<Event>{{"running", 10ms}}));
}

TEST_F(VirtualRuntimeTest, TicksAtEveryIntervalUntilTheTimerIsDestroyed) {
    auto timer = runtime.repeatOnMain(400ms, [&] { note("tick"); });
    runtime.runFor(400ms - 1ns);
    EXPECT_TRUE(events.empty());
    runtime.runFor(1ns + 400ms);
    timer.reset();
    runtime.runFor(10s);
    EXPECT_EQ(events, (std::vector<Event>{{"tick", 400ms}, {"tick", 800ms}}));
}

TEST_F(VirtualRuntimeTest, DoesNotMakeUpForTicksThatAreLate) {
    const auto timer = runtime.repeatOnMain(10ms, [&] {
        note("tick");
        if (events.size() == 1) runtime.sleepFor(35ms);
    });
    runtime.runFor(70ms);
    EXPECT_EQ(events,
              (std::vector<Event>{{"tick", 10ms}, {"tick", 45ms}, {"tick", 50ms}, {"tick", 60ms}, {"tick", 70ms}}));
}

TEST_F(VirtualRuntimeTest, LetsATimerDestroyItselfInItsTick) {
    std::unique_ptr<RepeatingTimer> timer;
    timer = runtime.repeatOnMain(1ms, [&] {
        note("tick");
        timer.reset();
    });
    runtime.runFor(1s);
    EXPECT_EQ(events.size(), 1u);
}

TEST_F(VirtualRuntimeTest, WaitsForTheEndOfAThreadThatIsDestroyed) {
    auto thread = runtime.startThread("worker", [&] {
        runtime.sleepFor(30ms);
        note("end");
    });
    thread.reset();
    EXPECT_EQ(events, (std::vector<Event>{{"end", 30ms}}));
}

TEST_F(VirtualRuntimeTest, WakesASignalsWaitersByNotifyOrAtTheDeadline) {
    const auto signal = runtime.makeSignal();
    for (const Duration deadline : {10ms, 30ms}) {
        runtime.background(Priority::normal, [&, deadline] {
            note(signal->wait("a test", TimePoint{deadline}) ? "notified" : "too late");
        });
    }
    runtime.runFor(20ms);
    signal->notifyAll();
    runtime.runFor(20ms);
    EXPECT_EQ(events, (std::vector<Event>{{"too late", 10ms}, {"notified", 20ms}}));
}

TEST_F(VirtualRuntimeTest, LetsTimePassUntilAConditionHolds) {
    runtime.backgroundAfter(7ms, [&] { note("job"); });
    EXPECT_TRUE(runtime.runUntil([&] { return !events.empty(); }, 1s));
    EXPECT_EQ(runtime.now(), TimePoint{7ms});
    EXPECT_FALSE(runtime.runUntil([&] { return events.size() == 2; }, 1s));
    EXPECT_EQ(runtime.now(), TimePoint{1007ms});
    EXPECT_TRUE(runtime.runUntil([&] { return runtime.now() == TimePoint{2s}; }, 993ms));
}

TEST_F(VirtualRuntimeTest, SeesAConditionThatHoldsForOneInstantOnly) {
    bool on = false;
    runtime.background(Priority::normal, [&] {
        runtime.sleepFor(1ms);
        on = true;
        runtime.sleepFor(1ns);
        on = false;
    });
    EXPECT_TRUE(runtime.runUntil([&] { return on; }, 1s));
    runtime.runFor(1ms); // the job uses this frame
}

TEST_F(VirtualRuntimeTest, KeepsOthersOutOfAMutexEvenWhenItsHolderPosts) {
    Mutex mutex(runtime);
    int inside = 0;
    for (int i = 0; i < 4; ++i) {
        runtime.background(Priority::normal, [&] {
            for (int round = 0; round < 50; ++round) {
                const Lock lock(mutex);
                EXPECT_EQ(++inside, 1);
                runtime.postMain([&] { note("posted"); });
                --inside;
            }
        });
    }
    runtime.runUntilIdle();
    EXPECT_EQ(events.size(), 200u);
}

TEST(VirtualRuntime, FindsDifferentOrdersWithDifferentSeeds) {
    std::set<std::string> orders;
    for (std::uint64_t seed = 0; seed < 100; ++seed) {
        VirtualRuntime runtime({.seed = seed});
        std::string order;
        for (const char name : {'a', 'b', 'c'})
            runtime.background(Priority::normal, [&order, name] { order += name; });
        runtime.runUntilIdle();
        orders.insert(order);
    }
    EXPECT_EQ(orders.size(), 6u);
}

TEST(VirtualRuntime, EndsEverythingThatWaitsWhenItIsDestroyed) {
    std::vector<std::string> ended;
    std::unique_ptr<VirtualRuntime::Signal> signal; // outlives the jobs that use it
    {
        VirtualRuntime runtime;
        signal = runtime.makeSignal();
        runtime.background(Priority::normal, [&] {
            runtime.sleepFor(24h);
            runtime.sleepFor(24h);
            ended.push_back("sleep");
        });
        runtime.background(Priority::normal, [&] {
            EXPECT_FALSE(signal->wait("nothing", std::nullopt));
            ended.push_back("wait");
        });
        runtime.runFor(1s);
        runtime.background(Priority::normal, [&] {
            EXPECT_EQ(runtime.syncMain([] { return 5; }), 0);
            ended.push_back("hop");
        });
        while (runtime.now() < TimePoint{2s}) // lets the last job begin without draining the main queue
            runtime.sleepFor(1s);
        runtime.backgroundAfter(1s, [&] { ended.push_back("never begun"); });
        runtime.postMain([&] { ended.push_back("never run"); });
        EXPECT_TRUE(ended.empty());
    }
    EXPECT_THAT(ended, testing::UnorderedElementsAre("sleep", "wait", "hop"));
}

TEST(VirtualRuntime, DestroysWhatItDrops) {
    const auto object = std::make_shared<int>(1);
    {
        VirtualRuntime runtime;
        runtime.postMain([object] {});
        runtime.postMainAfter(1s, [object] {});
        runtime.backgroundAfter(1s, [object] {});
        runtime.background(Priority::normal, [object, &runtime] { runtime.sleepFor(1h); });
    }
    EXPECT_EQ(object.use_count(), 1);
}

} // namespace
} // namespace lumbrine
