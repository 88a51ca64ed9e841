// Reports SIGINT and SIGTERM by a call on an ordinary thread, so that a program can end in an orderly way.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace lumbrine {

// Create one in main, before any other thread: it blocks both signals in the calling thread, and new threads inherit
// that. The signals stay blocked after its destruction, so that a late signal does not kill a program that is ending.
class TerminationSignals {
public:
    // Calls `callback` for each signal, on a thread for this purpose. The callback may call anything, for example
    // RunLoop::stop; it is not a signal handler.
    explicit TerminationSignals(std::function<void()> callback);

    // No call follows. Must not be called from `callback`.
    ~TerminationSignals();

    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    void wait();

    const std::function<void()> callback;
    std::atomic<bool> ending{false};
    std::thread thread;
};

} // namespace lumbrine
