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

// Every job begins at once, on a thread that is free or else on a new one, since jobs may sleep and block for as long
// as they like. Threads are kept: there come to be as many as jobs ever ran at the same time. Only in a flood do jobs
// wait, in their order: when there are as many threads as may be, or when the system gives no more.
class ThreadCache {
public:
    static constexpr std::size_t maxThreads = 512;

    ThreadCache() = default;

    // Waits for the jobs that run.
    ~ThreadCache();

    ThreadCache(const ThreadCache&) = delete;
    ThreadCache& operator=(const ThreadCache&) = delete;

    // Any thread. Dropped after `stop`.
    void run(Task job);

    // Begins no job any more.
    void stop();

private:
    void work();
    bool addThread(); // under the lock; false when there is to be none

    std::mutex mutex;
    std::condition_variable changed;
    RingQueue<Task> jobs;
    std::size_t freeThreads = 0;
    std::vector<std::thread> threads;
    bool stopped = false;
};

} // namespace lumbrine
