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
    using namespace std::chrono;
    const auto left = end.time_since_epoch() - duration_cast<Duration>(steady_clock::now().time_since_epoch());
    if (left <= Duration::zero()) return;
    const auto whole = duration_cast<seconds>(left);
    const timespec relative{.tv_sec = static_cast<time_t>(whole.count()),
                            .tv_nsec = static_cast<long>(nanoseconds(left - whole).count())};
    pthread_cond_timedwait_relative_np(changed.native_handle(), lock.mutex()->native_handle(), &relative);
}

struct StayOnThisCore::Before {};

StayOnThisCore::StayOnThisCore() = default;
StayOnThisCore::~StayOnThisCore() = default;

} // namespace lumbrine
