#include "platform/linux/bell.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

namespace lumbrine {

Bell::Bell() {
    ::sem_init(&semaphore, 0, 0);
}

Bell::~Bell() {
    ::sem_destroy(&semaphore);
}

void Bell::ring() {
    ::sem_post(&semaphore);
}

void Bell::wait() {
    while (::sem_wait(&semaphore) != 0 && errno == EINTR) {
    }
    forgetRings();
}

void Bell::waitFor(Duration limit) {
    constexpr long billion = 1'000'000'000;
    const auto nanoseconds = std::max(limit, Duration::zero()).count();
    timespec deadline{};
    ::clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += nanoseconds / billion;
    deadline.tv_nsec += nanoseconds % billion;
    if (deadline.tv_nsec >= billion) {
        deadline.tv_sec += 1;
        deadline.tv_nsec -= billion;
    }
    while (::sem_clockwait(&semaphore, CLOCK_MONOTONIC, &deadline) != 0 && errno == EINTR) {
    }
    forgetRings();
}

void Bell::forgetRings() {
    while (::sem_trywait(&semaphore) == 0) {
    }
}

} // namespace lumbrine
