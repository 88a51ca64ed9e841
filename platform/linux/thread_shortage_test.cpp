// Background work when the system refuses to create more threads.
#include "platform/posix/thread_cache.h"

#include <pthread.h>

#include <future>
#include <set>

namespace lumbrine {
namespace {

// While this object lives, no thread can be created: each would need a stack larger than the address space.
class ThreadShortage {
public:
    ThreadShortage() {
        pthread_attr_t impossible{};
        pthread_getattr_default_np(&usual);
        pthread_getattr_default_np(&impossible);
        pthread_attr_setstacksize(&impossible, std::size_t{1} << 47);
        EXPECT_EQ(pthread_setattr_default_np(&impossible), 0);
    }
    ~ThreadShortage() { pthread_setattr_default_np(&usual); }
    ThreadShortage(const ThreadShortage&) = delete;
    ThreadShortage& operator=(const ThreadShortage&) = delete;

private:
    pthread_attr_t usual{};
};

TEST(ThreadShortage, LeavesBackgroundJobsToTheThreadsThatAreThere) {
    std::promise<void> letGo;
    std::promise<void> allEnded;
    std::set<std::thread::id> workers;
    ThreadCache cache;
    cache.run([&] {
        letGo.get_future().wait();
        workers.insert(std::this_thread::get_id());
    });
    {
        const ThreadShortage shortage;
        EXPECT_THROW(std::thread([] {}), std::system_error);
        for (int i = 0; i < 10; ++i)
            cache.run([&] { workers.insert(std::this_thread::get_id()); });
        cache.run([&] { allEnded.set_value(); });
    }
    letGo.set_value();
    allEnded.get_future().wait();
    EXPECT_EQ(workers.size(), 1u);
}

} // namespace
} // namespace lumbrine
