// The main loop of a program without a toolkit.
#pragma once

#include "platform/api/main_loop.h"
#include "platform/posix/timed_jobs.h"

#include <atomic>
#include <thread>

namespace lumbrine {

class RunLoop final : public MainLoop {
public:
    // The calling thread is the main thread until another thread calls `run`.
    explicit RunLoop(TimerOrder order = TimerOrder::whenSeen);

    // Runs jobs on the calling thread until `stop`. Call once.
    void run();

    bool onMain() const override;
    void post(Task task) override;
    void postAfter(Duration delay, Task task) override;
    std::unique_ptr<RepeatingTimer> repeat(Duration interval, std::function<void()> tick) override;
    void stop() override; // not from a signal handler: see termination_signals.h

private:
    std::atomic<std::thread::id> mainThread;
    TimedJobs jobs;
};

} // namespace lumbrine
