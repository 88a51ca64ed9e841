// Floods of jobs that all block.
#include "platform/posix/thread_cache.h"

#include <atomic>
#include <future>
#include <memory>
#include <set>

namespace lumbrine {
namespace {

class ThreadCacheTest : public testing::Test {
protected:
    // Each job waits until all are let go.
    void give(std::size_t jobs) {
        for (std::size_t i = 0; i < jobs; ++i)
            cache->run([this] {
                ++begun;
                begun.notify_all();
                released.wait();
                const std::lock_guard lock(mutex);
                workers.insert(std::this_thread::get_id());
                ++ended;
                ended.notify_all();
            });
    }

    static void waitFor(const std::atomic<std::size_t>& count, std::size_t wanted) {
        for (std::size_t now = count; now < wanted; now = count)
            count.wait(now);
    }

    void letGo() { releasing.set_value(); }

    std::atomic<std::size_t> begun{0};
    std::atomic<std::size_t> ended{0};
    std::set<std::thread::id> workers; // threads that have finished a job

private:
    std::mutex mutex;
    std::promise<void> releasing;
    std::shared_future<void> released = releasing.get_future().share();

protected:
    std::unique_ptr<ThreadCache> cache = std::make_unique<ThreadCache>();
};

TEST_F(ThreadCacheTest, HasAThreadForEachJobUpToItsLimitAndLosesNoneBeyondIt) {
    constexpr std::size_t jobs = ThreadCache::maxThreads + 1000;
    give(jobs);
    waitFor(begun, ThreadCache::maxThreads);
    EXPECT_EQ(begun, ThreadCache::maxThreads);
    letGo();
    waitFor(ended, jobs);
    cache.reset();
    EXPECT_EQ(workers.size(), ThreadCache::maxThreads);
}

TEST_F(ThreadCacheTest, BeginsNoneOfTheJobsThatWaitOnceItIsStopped) {
    give(ThreadCache::maxThreads + 1000);
    waitFor(begun, ThreadCache::maxThreads);
    cache->stop();
    letGo();
    cache.reset();
    EXPECT_EQ(ended, ThreadCache::maxThreads);
}

} // namespace
} // namespace lumbrine
