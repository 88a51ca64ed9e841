// The receiver's own runtime counts what it is given, and ends by itself.
#include "tests/simulation/receiver_runtime.h"

namespace lumbrine::simulation {
namespace {

using namespace std::chrono_literals;

class ReceiverRuntimeTest : public testing::Test {
protected:
    VirtualRuntime world;
    ReceiverRuntime runtime{world};
};

TEST_F(ReceiverRuntimeTest, CountsTheThreadsThatThereWereAtTheSameTime) {
    for (int i = 0; i < 3; ++i)
        runtime.background(Priority::normal, [this] { runtime.sleepFor(1s); });
    world.runFor(2s);
    runtime.background(Priority::normal, [] {});
    world.runFor(1s);
    EXPECT_EQ(runtime.peak().threads, 2 + 3);
    const auto queue = runtime.serialQueue("queue", Priority::normal);
    const auto thread = runtime.startThread("thread", [] {});
    runtime.backgroundAfter(1s, [this] { runtime.sleepFor(1s); });
    runtime.background(Priority::normal, [this] { runtime.sleepFor(2s); });
    world.runFor(3s);
    EXPECT_EQ(runtime.peak().threads, 2 + 2 + 2);
}

TEST_F(ReceiverRuntimeTest, CountsTheJobsThatWaitInAQueueBesideTheOneThatRuns) {
    const auto queue = runtime.serialQueue("queue", Priority::normal);
    queue->post([this] { runtime.sleepFor(1s); });
    world.runUntilIdle();
    for (int i = 0; i < 4; ++i)
        queue->post([this] { runtime.sleepFor(1s); });
    world.runFor(10s);
    EXPECT_EQ(runtime.peak().waiting.at("queue"), 4);
}

TEST_F(ReceiverRuntimeTest, EndsWhileTheWorldGoesOn) {
    std::string ended;
    const auto queue = runtime.serialQueue("queue", Priority::normal);
    queue->post([&] {
        runtime.sleepFor(1h);
        bool ran = false;
        runtime.syncMain([&ran] { ran = true; });
        ended += ran ? "a hop that ran" : "sleeper";
    });
    queue->post([&] { ended += " second job"; });
    runtime.backgroundAfter(1s, [&] { ended += " delayed job"; });
    world.runFor(500ms);
    runtime.shutDown();
    runtime.background(Priority::normal, [&] { ended += " background job"; });
    world.runUntilIdle();
    EXPECT_EQ(ended, "sleeper");
    runtime.postMainAfter(1s, [&] { ended += " main job"; });
    world.runFor(1s);
    EXPECT_EQ(ended, "sleeper main job");
}

} // namespace
} // namespace lumbrine::simulation
