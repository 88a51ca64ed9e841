#include "platform/posix/os_thread.h"
#include "platform/virtual/turn.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace lumbrine {

struct Turn::Flow {
    std::optional<StayOnThisCore> core; // of the thread that starts the others
    std::thread::id id;
    std::thread thread;

    std::mutex mutex;
    std::condition_variable arrival;
    bool here = false; // the turn

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
};

Turn::Turn() : flow(std::make_unique<Flow>()) {
    flow->core.emplace();
    flow->id = std::this_thread::get_id();
}

Turn::Turn(std::function<void()> body) : flow(std::make_unique<Flow>()) {
    flow->thread = std::thread([own = flow.get(), body = std::move(body)] {
        nameThisThread("virtual");
        own->take();
        body();
    });
    flow->id = flow->thread.get_id();
}

Turn::~Turn() = default;

void Turn::passTo(Turn& other) {
    other.flow->give();
    flow->take();
}

void Turn::letEnd(Turn& other) {
    other.flow->give();
    other.flow->thread.join();
}

bool Turn::onItsThread() const {
    return flow->id == std::this_thread::get_id();
}

} // namespace lumbrine
