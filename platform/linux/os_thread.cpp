#include "platform/posix/os_thread.h"

#include <pthread.h>
#include <sched.h>

#include <chrono>
#include <string>

namespace lumbrine {

void nameThisThread(std::string_view name) {
    pthread_setname_np(pthread_self(), std::string(name.substr(0, 15)).c_str());
}

void applyUrgency(Urgency) {}

void waitUntil(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, TimePoint end) {
    changed.wait_until(lock, std::chrono::steady_clock::time_point(end.time_since_epoch()));
}

struct StayOnThisCore::Before {
    cpu_set_t cores;
};

StayOnThisCore::StayOnThisCore() : before(std::make_unique<Before>()) {
    const int core = sched_getcpu();
    if (core < 0 || sched_getaffinity(0, sizeof before->cores, &before->cores) != 0) {
        before.reset();
        return;
    }
    cpu_set_t only;
    CPU_ZERO(&only);
    CPU_SET(static_cast<std::size_t>(core), &only);
    sched_setaffinity(0, sizeof only, &only);
}

StayOnThisCore::~StayOnThisCore() {
    if (before) sched_setaffinity(0, sizeof before->cores, &before->cores);
}

} // namespace lumbrine
