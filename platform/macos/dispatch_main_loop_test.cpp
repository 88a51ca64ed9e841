#include "platform/api/runtime.h"
#include "platform/macos/dispatch_main_loop.h"
#include "platform/macos/testing/accessibility_calls.h"
#include "platform/macos/testing/dispatch_calls.h"

namespace lumbrine {
namespace {

using Times = std::vector<std::uint64_t>;

constexpr std::uint64_t millisecond = 1'000'000;

class DispatchMainLoopTest : public ::testing::Test {
protected:
    DispatchMainLoopTest() {
        fakes::newDispatch();
        loop.makeTimersExact(true);
        start = fakes::dispatchNow();
    }
    ~DispatchMainLoopTest() override {
        EXPECT_EQ(fakes::liveSources(), 0) << "a timer is left";
        EXPECT_TRUE(fakes::everyTimerWasStrict());
        EXPECT_EQ(life.use_count(), 1) << "a job is left";
    }

    // In milliseconds since the beginning.
    std::uint64_t now() const { return (fakes::dispatchNow() - start) / millisecond; }

    // A job that records when it runs. What it captured must be destroyed in the end.
    auto note() {
        return [this, held = life] { ran.push_back(now()); };
    }

    const std::shared_ptr<int> life = std::make_shared<int>(0);
    std::uint64_t start = 0;
    Times ran;
    int ended = 0;
    DispatchMainLoop loop{[this] { ++ended; }};
};

TEST_F(DispatchMainLoopTest, RunsJobsInOrderAndNotFromWithin) {
    std::vector<int> order;
    for (int i = 0; i < 3; ++i)
        loop.post([&order, i, held = life] { order.push_back(i); });
    EXPECT_TRUE(order.empty());
    fakes::runDispatch(0);
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
    EXPECT_TRUE(loop.onMain());
}

TEST_F(DispatchMainLoopTest, RunsDelayedJobsWhenTheirTimeHasCome) {
    loop.postAfter(seconds(0.03), note());
    loop.postAfter(seconds(0.01), note());
    loop.postAfter(seconds(0), note());
    loop.postAfter(seconds(-1), note());
    fakes::runDispatch(100 * millisecond);
    EXPECT_EQ(ran, (Times{0, 0, 10, 30}));
}

TEST_F(DispatchMainLoopTest, RunsEverythingInAPoolThatIsEmptiedAfterIt) {
    std::vector<int> pools;
    const auto look = [&pools, held = life] { pools.push_back(fakes::screen().openPools); };
    loop.post(look);
    loop.postAfter(seconds(0.01), look);
    auto timer = loop.repeat(seconds(0.02), look);
    fakes::runDispatch(50 * millisecond);
    EXPECT_EQ(pools, (std::vector<int>{1, 1, 1, 1}));
    timer.reset();
    EXPECT_EQ(fakes::screen().openPools, 0);
}

TEST_F(DispatchMainLoopTest, ADelayedJobMayPostAnother) {
    loop.postAfter(seconds(0.01), [this, held = life] { loop.postAfter(seconds(0.02), note()); });
    fakes::runDispatch(100 * millisecond);
    EXPECT_EQ(ran, Times{30});
}

TEST_F(DispatchMainLoopTest, RepeatsUntilTheTimerIsDestroyed) {
    auto timer = loop.repeat(seconds(0.4), note());
    fakes::runDispatch(1000 * millisecond);
    EXPECT_EQ(ran, (Times{400, 800}));
    timer.reset();
    fakes::runDispatch(1000 * millisecond);
    EXPECT_EQ(ran.size(), 2U);
}

TEST_F(DispatchMainLoopTest, ATickThatComesLateDoesNotBringTheOnesItDelayedAfterIt) {
    const auto timer = loop.repeat(seconds(0.1), note());
    fakes::runDispatch(150 * millisecond);
    fakes::stallDispatch(500 * millisecond);
    fakes::runDispatch(100 * millisecond);
    EXPECT_EQ(ran, (Times{100, 650, 700}));
}

TEST_F(DispatchMainLoopTest, TimersMayBeLateByATenthUnlessTheyHaveToBeExact) {
    loop.makeTimersExact(false);
    loop.postAfter(seconds(0.5), note());
    const auto timer = loop.repeat(seconds(0.2), note());
    fakes::runDispatch(450 * millisecond);
    EXPECT_EQ(ran, (Times{220, 420}));
    fakes::runDispatch(150 * millisecond);
    EXPECT_EQ(ran, (Times{220, 420, 550}));
    loop.makeTimersExact(true);
    fakes::runDispatch(500 * millisecond);
    EXPECT_EQ(ran, (Times{220, 420, 550, 620, 820, 1020}));
    loop.makeTimersExact(false);
    fakes::runDispatch(600 * millisecond);
    EXPECT_EQ(ran, (Times{220, 420, 550, 620, 820, 1020, 1220, 1440, 1640}));
}

TEST_F(DispatchMainLoopTest, ATickMayDestroyItsOwnTimer) {
    std::unique_ptr<RepeatingTimer> timer;
    timer = loop.repeat(seconds(0.1), [&timer, this, held = life] {
        timer.reset();
        ran.push_back(now());
    });
    fakes::runDispatch(1000 * millisecond);
    EXPECT_EQ(ran, Times{100});
}

TEST_F(DispatchMainLoopTest, StopsTheEventLoopFromTheMainThread) {
    loop.stop();
    EXPECT_EQ(ended, 0);
    fakes::runDispatch(0);
    EXPECT_EQ(ended, 1);
}

} // namespace
} // namespace lumbrine
