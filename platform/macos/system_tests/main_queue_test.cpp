// The main loop on the system's own main queue, inside the event loop of the main thread.
#include "platform/api/runtime.h"
#include "platform/macos/dispatch_main_loop.h"
#include "platform/macos/system_tests/main_queue.h"

#include <thread>

namespace lumbrine {
namespace {

TEST(MainQueueTest, RunsJobsOfEveryThreadInTheirOrderOnTheMainThread) {
    DispatchMainLoop loop([] {});
    std::vector<int> order;
    bool onMain = true;
    std::thread([&] {
        for (int i = 0; i < 1000; ++i)
            loop.post([&, i] {
                order.push_back(i);
                onMain = onMain && loop.onMain();
            });
    }).join();
    ASSERT_TRUE(runMainQueueUntil([&] { return order.size() == 1000; }));
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    EXPECT_TRUE(onMain);
}

TEST(MainQueueTest, TimersRunWhileAMenuIsOpen) {
    DispatchMainLoop loop([] {});
    const CFRunLoopMode tracking = CFSTR("NSEventTrackingRunLoopMode");
    CFRunLoopAddCommonMode(CFRunLoopGetMain(), tracking); // as AppKit does
    int ticks = 0;
    const auto timer = loop.repeat(seconds(0.01), [&ticks] { ++ticks; });
    EXPECT_TRUE(runMainQueueUntil([&] { return ticks >= 5; }, tracking));
}

TEST(MainQueueTest, DelayedJobsAreNotEarly) {
    DispatchMainLoop loop([] {});
    loop.makeTimersExact(true);
    const CFAbsoluteTime begin = CFAbsoluteTimeGetCurrent();
    CFAbsoluteTime ran = 0;
    loop.postAfter(seconds(0.2), [&ran] { ran = CFAbsoluteTimeGetCurrent(); });
    ASSERT_TRUE(runMainQueueUntil([&] { return ran != 0; }));
    EXPECT_GE(ran - begin, 0.199);
}

} // namespace
} // namespace lumbrine
