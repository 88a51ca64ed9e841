#include "platform/posix/thread_cache.h"

#include "platform/posix/os_thread.h"

#include <system_error>
#include <utility>

namespace lumbrine {

void ThreadCache::run(Task job) {
    const std::lock_guard lock(mutex);
    if (stopped) return;
    jobs.push(std::move(job));
    if (jobs.size() <= freeThreads || !addThread()) changed.notify_one();
}

bool ThreadCache::addThread() {
    if (threads.size() == maxThreads) return false;
    try {
        threads.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        if (threads.empty()) throw; // no thread would ever run the job
        return false;
    }
    ++freeThreads; // the new thread counts as free until it has taken a job
    return true;
}

void ThreadCache::work() {
    nameThisThread("background");
    std::unique_lock lock(mutex);
    for (;;) {
        changed.wait(lock, [this] { return stopped || !jobs.empty(); });
        if (stopped) return;
        Task job = jobs.pop();
        --freeThreads;
        lock.unlock();
        job();
        job = Task{}; // outside the lock: destructors of what it captured may post jobs
        lock.lock();
        ++freeThreads;
    }
}

void ThreadCache::stop() {
    RingQueue<Task> dropped; // declared before the lock, so destroyed after it is released
    const std::lock_guard lock(mutex);
    stopped = true;
    std::swap(dropped, jobs);
    changed.notify_all();
}

ThreadCache::~ThreadCache() {
    stop();
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace lumbrine
