// Jobs for one thread, some of them for later: what the own main loop and every serial queue are made of.
#pragma once

#include "base/deadline_heap.h"
#include "base/ring_queue.h"
#include "platform/api/main_loop.h"
#include "platform/api/task.h"
#include "platform/api/time.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace lumbrine {

// Everything but `run` may be called on any thread. Posting takes one lock, wakes the running thread only when that
// one sleeps, and allocates nothing once the queue has had its usual length. Without a job that is due nobody wakes
// up.
class TimedJobs {
public:
    // From the moment that `dropping` is true (null: never) jobs are dropped when their turn comes. It outlives this.
    explicit TimedJobs(const std::atomic<bool>* dropping = nullptr, TimerOrder timerOrder = TimerOrder::whenSeen)
        : dropsAll(dropping), order(timerOrder) {}

    static TimePoint now();

    // The end of time when `delay` leads beyond it.
    static TimePoint after(Duration delay);

    void post(Task job);

    // Not before that time, and after the jobs that became due earlier.
    void postAt(TimePoint due, Task job);

    // Runs jobs on the calling thread until `stop`; at once back when that was before.
    void run();

    // `run` returns after the job that it is in. What has not begun is destroyed with this object.
    void stop();

private:
    void wake();
    void takeDue();

    const std::atomic<bool>* const dropsAll;
    const TimerOrder order;

    std::mutex mutex;
    std::condition_variable changed;
    RingQueue<Task> ready;
    DeadlineHeap<TimePoint, Task> delayed;
    bool asleep = false;
    bool stopped = false;
};

} // namespace lumbrine
