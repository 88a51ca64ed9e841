#include "platform/posix/posix_process_end.h"

#include <sys/time.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

namespace lumbrine {

namespace {

std::atomic<int> statusAtDeadline{0}; // a signal handler sees nothing but globals
static_assert(std::atomic<int>::is_always_lock_free);

} // namespace

void PosixProcessEnd::setStatus(int status) {
    statusAtDeadline = status;
}

void PosixProcessEnd::within(Duration limit) {
    if (isSet.exchange(true)) return;
    struct sigaction endAtOnce{};
    endAtOnce.sa_handler = [](int) { _exit(statusAtDeadline); };
    sigaction(SIGALRM, &endAtOnce, nullptr);
    const auto whole = std::chrono::duration_cast<std::chrono::seconds>(limit);
    const auto rest = std::chrono::duration_cast<std::chrono::microseconds>(limit - whole);
    const itimerval once{
        .it_interval = {},
        .it_value = {.tv_sec = static_cast<time_t>(whole.count()), .tv_usec = static_cast<suseconds_t>(rest.count())}};
    setitimer(ITIMER_REAL, &once, nullptr);
}

} // namespace lumbrine
