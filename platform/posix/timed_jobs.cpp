#include "platform/posix/timed_jobs.h"

#include "platform/posix/os_thread.h"

#include <chrono>
#include <utility>

namespace lumbrine {

TimePoint TimedJobs::now() {
    return TimePoint{std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch())};
}

TimePoint TimedJobs::after(Duration delay) {
    const TimePoint time = now();
    if (delay <= Duration::zero()) return time;
    return delay > TimePoint::max() - time ? TimePoint::max() : time + delay;
}

// Caller holds the lock. Notifying after unlocking would be a race: the woken thread may destroy this object.
void TimedJobs::wake() {
    if (std::exchange(asleep, false)) changed.notify_one();
}

void TimedJobs::post(Task job) {
    const std::lock_guard lock(mutex);
    if (order == TimerOrder::whenDue) takeDue(); // jobs that are due go in before this one
    ready.push(std::move(job));
    wake();
}

void TimedJobs::postAt(TimePoint due, Task job) {
    const std::lock_guard lock(mutex);
    const auto soonest = delayed.nextDue();
    delayed.push(due, std::move(job));
    if (!soonest || due < *soonest) wake();
}

void TimedJobs::takeDue() {
    if (delayed.empty()) return;
    while (auto due = delayed.popDue(now()))
        ready.push(std::move(*due));
}

void TimedJobs::run() {
    std::unique_lock lock(mutex);
    while (!stopped) {
        takeDue();
        if (!ready.empty()) {
            Task job = ready.pop();
            lock.unlock();
            if (dropsAll == nullptr || !*dropsAll) job();
            job = Task{}; // destroyed without the lock: what it captured may post jobs
            lock.lock();
            continue;
        }
        asleep = true;
        if (const auto due = delayed.nextDue()) {
            waitUntil(changed, lock, *due);
        } else {
            changed.wait(lock);
        }
        asleep = false;
    }
}

void TimedJobs::stop() {
    const std::lock_guard lock(mutex);
    stopped = true;
    wake();
}

} // namespace lumbrine
