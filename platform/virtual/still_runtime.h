// A runtime in which only the test moves time and nothing runs behind it: for tests, fuzzers and benchmarks of code
// that asks for the time, sleeps or takes a lock, and no more. Locks are the system's own; nothing here allocates.
#pragma once

#include "platform/api/runtime.h"

#include <memory>
#include <string>

namespace lumbrine {

// Every thread passes for the main thread. A job is dropped, a queue, timer or thread is null.
class StillRuntime final : public Runtime {
public:
    TimePoint time{}; // what `now` tells; a sleep moves it on and returns at once

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
