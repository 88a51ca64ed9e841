// Real time: standard threads, the system's steady clock, and the main queue of an event loop.
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
//   2. shutDown() is called, so that nothing below has to wait for a sleep or a hop;
//   3. servers, queues, timers and threads are destroyed;
//   4. the runtime is destroyed; it waits for the background jobs that still run;
//   5. the loop is destroyed, and with it the main jobs that never ran.
// The urgency of a job's thread follows its priority (os_thread.h). A thread of its own is for what arrives from
// outside and has to be served at once, so it has the highest.
class RealRuntime final : public Runtime {
public:
    // The loop must outlive the runtime.
    explicit RealRuntime(MainLoop& loop);
    ~RealRuntime() override;

    // Begins the end of the program. From now on sleeps return at once, syncMain returns without running its function,
    // and no job of a serial queue or of the background begins. Any thread. Further calls do nothing.
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
    std::condition_variable ending;  // wakes sleepers; notified by shutDown only
    std::condition_variable arrived; // wakes callers of runOnMainAndWait

    ThreadCache threads;
    std::unique_ptr<SerialQueue> delays; // passes each delayed background job to `threads` when it is due
};

} // namespace lumbrine
