// The right to run, handed from thread to thread.
#pragma once

#include <condition_variable>
#include <mutex>

namespace lumbrine {

// Where one thread waits until the baton comes to it. Neither side spins. The taker sees everything that the giver
// did. The object must outlive both calls, hence nobody frees one before all threads have been joined.
class Baton {
public:
    void give() {
        {
            const std::lock_guard lock(mutex);
            here = true;
        }
        arrival.notify_one(); // after the unlock: waking a thread into a taken lock would cost a second switch
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
