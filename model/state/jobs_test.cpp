#include "model/state/jobs.h"
#include "platform/virtual/virtual_runtime.h"

#include <chrono>
#include <memory>
#include <string>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

class JobsTest : public testing::Test {
protected:
    JobsTest() { jobs.bind(owner); }

    VirtualRuntime runtime;
    Jobs jobs{runtime};
    std::shared_ptr<int> owner = std::make_shared<int>(0);
    std::string ran;
};

TEST_F(JobsTest, RunAtOnceOnTheMainThread) {
    jobs.runOnMain([this] { ran += "x"; });
    EXPECT_EQ(ran, "x");
}

TEST_F(JobsTest, RunLaterWhenTheyAreGivenElsewhere) {
    jobs.inBackground(Priority::normal, [this] {
        jobs.runOnMain([this] { ran += runtime.onMain() ? "main" : "elsewhere"; });
        runtime.sleepFor(1s);
    });
    runtime.runUntilIdle();
    EXPECT_EQ(ran, "main");
    runtime.runFor(1s);
}

TEST_F(JobsTest, DoNothingOnceTheirOwnerIsGone) {
    const auto queue = runtime.serialQueue("jobs", Priority::normal);
    queue->post([this] { runtime.sleepFor(1ms); });
    jobs.onQueue(*queue, [this] { ran += "queue"; });
    jobs.onMainAfter(1ms, [this] { ran += "main"; });
    jobs.inBackgroundAfter(1ms, [this] { ran += "background"; });
    owner.reset();
    runtime.runFor(1s);
    EXPECT_EQ(ran, "");
}

TEST_F(JobsTest, KeepTheirOwnerUntilTheyEnd) {
    const std::weak_ptr<int> gone = owner;
    jobs.inBackground(Priority::normal, [this] { runtime.sleepFor(10ms); });
    runtime.runFor(5ms);
    owner.reset();
    EXPECT_FALSE(gone.expired());
    runtime.runFor(5ms);
    EXPECT_TRUE(gone.expired());
}

TEST_F(JobsTest, FitATaskWithoutAllocationUpTo48Bytes) {
    struct {
        std::byte bytes[48];
        void operator()() const {}
    } largest{};
    static_assert(sizeof(jobs.guarded(largest)) <= Task::inlineSize);
}

} // namespace
} // namespace lumbrine
