// Threads for background work.
#pragma once

#include "base/ring_queue.h"
#include "platform/api/task.h"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

namespace lumbrine {

// Each job begins at once, on a free thread or on a new one, because jobs may sleep and block as long as they like. The
// pool grows to the peak number of concurrent jobs and never shrinks. At the limit of threads, or when the system
// refuses a new one, jobs wait in order.
class ThreadCache {
public:
    static constexpr std::size_t maxThreads = 7;

    ThreadCache() = default;

    // Calls `stop` and waits for the jobs that run.
    ~ThreadCache();

    ThreadCache(const ThreadCache&) = delete;
    ThreadCache& operator=(const ThreadCache&) = delete;

    // Any thread. After `stop`, the job is dropped.
    void run(Task job);

    // Drops the jobs that wait; from now on no job begins.
    void stop();

private:
    void work();
    bool addThread(); // caller holds the lock; false at the limit, or when the system refuses

    std::mutex mutex;
    std::condition_variable changed;
    RingQueue<Task> jobs;
    std::size_t freeThreads = 0;
    std::vector<std::thread> threads;
    bool stopped = false;
};

} // namespace lumbrine
