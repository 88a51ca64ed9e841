// A runtime whose time only the test moves and that runs no jobs. For tests, fuzzers and benchmarks of code that only
// asks for the time, sleeps or takes a lock. Locks are the system's; nothing here allocates.
#pragma once

#include "platform/api/runtime.h"

#include <memory>
#include <string>

namespace lumbrine {

// Every thread counts as the main thread. Jobs are dropped; queues, timers and threads are null.
class StillRuntime final : public Runtime {
public:
    TimePoint time{}; // returned by `now`; a sleep adds its duration and returns at once

    TimePoint now() const override { return time; }
    void sleepFor(Duration duration) override { time += duration; }
    bool onMain() const override { return true; }

    void postMain(Task) override {}
    void postMainAfter(Duration, Task) override {}
    void background(Priority, Task) override {}
    void backgroundAfter(Duration, Task) override {}
    std::unique_ptr<SerialQueue> serialQueue(std::string, Priority) override { return nullptr; }
    std::unique_ptr<RepeatingTimer> repeatOnMain(Duration, std::function<void()>) override { return nullptr; }
    std::unique_ptr<Thread> startThread(std::string, Task) override { return nullptr; }

protected:
    void runOnMainAndWait(Task) override {}
};

} // namespace lumbrine
