// The main queue of virtual time, and the repeating timers on it.
#pragma once

#include "base/ring_queue.h"
#include "platform/api/main_loop.h"
#include "platform/api/runtime.h"
#include "platform/virtual/virtual_scheduler.h"

#include <functional>
#include <memory>

namespace lumbrine {

class VirtualMainQueue final : private VirtualScheduler::Sink {
public:
    VirtualMainQueue(VirtualScheduler& scheduler, TimerOrder order) : scheduler(scheduler), order(order) {}

    // Jobs posted after the scheduler has stopped are dropped.
    void post(Task task);
    void postAfter(Duration delay, Task task);
    void postAndWait(Task task);
    std::unique_ptr<RepeatingTimer> repeat(Duration interval, std::function<void()> tick);

    // Runs jobs and lets time pass to `end`, or until the condition holds. Returns true when the condition held. Main
    // thread only.
    bool drain(TimePoint end, const std::function<bool()>* condition);

    // Drops all queued jobs.
    void clear();

private:
    struct Repetition;
    class Timer;

    void accept(Task task) override; // gets a delayed job when it is due
    void add(RingQueue<Task>& queue, Task task);
    void scheduleTick(const std::shared_ptr<Repetition>& repetition);

    VirtualScheduler& scheduler;
    const TimerOrder order;
    RingQueue<Task> jobs;
    RingQueue<Task> unseen; // TimerOrder::whenSeen only: jobs that became due after the last look at the timers
};

} // namespace lumbrine
