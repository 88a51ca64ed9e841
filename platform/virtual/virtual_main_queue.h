// The main queue of virtual time, and what repeats on it.
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
    VirtualMainQueue(VirtualScheduler& virtualScheduler, TimerOrder timerOrder)
        : scheduler(virtualScheduler), order(timerOrder) {}

    // Jobs posted after the world has ended are dropped.
    void post(Task task);
    void postAfter(Duration delay, Task task);
    void postAndWait(Task task);
    std::unique_ptr<RepeatingTimer> repeat(Duration interval, std::function<void()> tick);

    // On the main thread: runs what is there and lets time pass to `end`, or until the condition holds. True when it
    // held.
    bool drain(TimePoint end, const std::function<bool()>* condition);

    // Drops all that is queued.
    void clear();

private:
    struct Repetition;
    class Timer;

    void accept(Task task) override; // of what was delayed
    void add(RingQueue<Task>& queue, Task task);
    void scheduleTick(const std::shared_ptr<Repetition>& repetition);

    VirtualScheduler& scheduler;
    const TimerOrder order;
    RingQueue<Task> jobs;
    RingQueue<Task> unseen; // due, but the main thread has not looked at its timers since
};

} // namespace lumbrine
