#include "platform/posix/os_thread.h"

#include <pthread.h>
#include <pthread/qos.h>

#include <chrono>
#include <string>

namespace lumbrine {

void nameThisThread(std::string_view name) {
    pthread_setname_np(std::string(name.substr(0, 15)).c_str());
}

void applyUrgency(Urgency urgency) {
    switch (urgency) {
    case Urgency::utility:
        pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0);
        return;
    case Urgency::normal:
        pthread_set_qos_class_self_np(QOS_CLASS_DEFAULT, 0);
        return;
    case Urgency::userInitiated:
        pthread_set_qos_class_self_np(QOS_CLASS_USER_INITIATED, 0);
        return;
    case Urgency::userInteractive:
        pthread_set_qos_class_self_np(QOS_CLASS_USER_INTERACTIVE, 0);
        return;
    }
}

void waitUntil(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, TimePoint end) {
    const auto now = std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch());
    const Duration left = end.time_since_epoch() - now;
    if (left <= Duration::zero()) return;
    constexpr Duration::rep perSecond = 1'000'000'000;
    const timespec relative{.tv_sec = static_cast<time_t>(left.count() / perSecond),
                            .tv_nsec = static_cast<long>(left.count() % perSecond)};
    pthread_cond_timedwait_relative_np(changed.native_handle(), lock.mutex()->native_handle(), &relative);
}

struct StayOnThisCore::Before {};

StayOnThisCore::StayOnThisCore() = default;
StayOnThisCore::~StayOnThisCore() = default;

} // namespace lumbrine
