// Real time: standard threads, the system's steady clock, and a main queue that some event loop drains.
#pragma once

#include "platform/api/main_loop.h"
#include "platform/api/runtime.h"
#include "platform/posix/thread_cache.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace lumbrine {

// A program ends in this order, all on the main thread:
//   1. the event loop returns;
//   2. shutDown();
//   3. servers, queues, timers and threads are destroyed, which no longer wait for sleeps and hops;
//   4. the runtime is destroyed and waits for the background jobs that still run;
//   5. the loop is destroyed, and with it the main jobs that never ran.
// Priorities are not handed to the system: every job begins as soon as there is a core for it.
class RealRuntime final : public Runtime {
public:
    // The loop outlives the runtime.
    explicit RealRuntime(MainLoop& mainLoop);
    ~RealRuntime() override;

    // From now on sleeps return at once, hops to the main thread return without having run anything, and no job of the
    // background or of a serial queue begins. Any thread; again does nothing.
    void shutDown();

    TimePoint now() const override;
    void sleepFor(Duration duration) override;
    bool onMain() const override;
    void postMain(Task task) override;
    void postMainAfter(Duration delay, Task task) override;
    void background(Priority priority, Task task) override;
    void backgroundAfter(Duration delay, Task task) override;
    std::unique_ptr<SerialQueue> serialQueue(std::string label, Priority priority) override;
    std::unique_ptr<RepeatingTimer> repeatOnMain(Duration interval, std::function<void()> tick) override;
    std::unique_ptr<Thread> startThread(std::string name, Task body) override;

protected:
    void runOnMainAndWait(Task task) override;

private:
    struct Hop;

    MainLoop& loop;
    std::atomic<bool> stopping{false};

    std::mutex mutex;
    std::condition_variable ending;  // for sleepers: notified by shutDown alone
    std::condition_variable arrived; // for those who wait for their job on the main thread

    ThreadCache threads;
    std::unique_ptr<SerialQueue> delays; // hands delayed jobs to the threads when their time has come
};

} // namespace lumbrine
