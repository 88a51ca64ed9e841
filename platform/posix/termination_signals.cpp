#include "platform/posix/termination_signals.h"

#include "platform/posix/os_thread.h"

#include <csignal>
#include <utility>

namespace lumbrine {

namespace {

sigset_t terminationSet() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> callback) : callback(std::move(callback)) {
    const sigset_t set = terminationSet();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    thread = std::thread([this] { wait(); });
}

TerminationSignals::~TerminationSignals() {
    ending = true;
    pthread_kill(thread.native_handle(), SIGINT); // only wakes sigwait: the signal is blocked everywhere
    thread.join();
}

void TerminationSignals::wait() {
    nameThisThread("signals");
    const sigset_t set = terminationSet();
    for (;;) {
        int signal = 0;
        if (sigwait(&set, &signal) != 0) continue;
        if (ending) return;
        callback();
    }
}

} // namespace lumbrine
