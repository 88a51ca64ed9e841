// The right to run in virtual time, which threads pass to each other.
#pragma once

#include <condition_variable>
#include <mutex>

namespace lumbrine {

// Each thread has one baton and waits in `take` until another thread calls `give`. Everything that the giver did before
// is visible to the taker. A baton must outlive both calls, so all threads are joined before any baton is destroyed.
class Baton {
public:
    void give() {
        {
            const std::lock_guard lock(mutex);
            here = true;
        }
        arrival.notify_one(); // after unlocking: otherwise the woken thread would block on the lock and switch again
    }

    void take() {
        std::unique_lock lock(mutex);
        arrival.wait(lock, [this] { return here; });
        here = false;
    }

private:
    std::mutex mutex;
    std::condition_variable arrival;
    bool here = false;
};

} // namespace lumbrine
