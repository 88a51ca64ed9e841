// SIGINT and SIGTERM as a call on an ordinary thread, so that a program ends itself in order.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace lumbrine {

// Make one in main, before any other thread: it blocks both signals in the calling thread, and threads inherit that.
// They stay blocked when it is destroyed, so that one which comes late does not kill a program that is already ending.
class TerminationSignals {
public:
    // `arrived` is called for each signal on a thread of its own, where it may call anything: RunLoop::stop, for
    // example.
    explicit TerminationSignals(std::function<void()> arrived);

    // No call comes afterwards. Not from `arrived`.
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
