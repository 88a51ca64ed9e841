// A queue of jobs for one thread, some of them delayed. RunLoop and every serial queue are built on it.
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

// Any thread may call everything except `run`. Posting takes one lock, wakes the running thread only if it sleeps, and
// allocates nothing once the queue has reached its usual length. While no job is due, the thread sleeps.
class TimedJobs {
public:
    // While `dropsAll` is true, jobs are dropped instead of run; null means never. It must outlive this object.
    explicit TimedJobs(const std::atomic<bool>* dropsAll = nullptr, TimerOrder order = TimerOrder::whenSeen)
        : dropsAll(dropsAll), order(order) {}

    static TimePoint now();

    // now() + delay, clamped to the range of TimePoint.
    static TimePoint after(Duration delay);

    void post(Task job);

    // Runs the job at `due` or later, after the jobs that became due earlier.
    void postAt(TimePoint due, Task job);

    // Runs jobs on the calling thread until `stop`. Returns at once when `stop` was called before.
    void run();

    // Makes `run` return after the current job. Jobs that have not begun are destroyed with this object.
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
