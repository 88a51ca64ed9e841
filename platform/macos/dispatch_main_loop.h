// The main loop of a program whose main thread runs the event loop of macOS.
#pragma once

#include "platform/api/main_loop.h"

#include <atomic>
#include <functional>
#include <utility>

namespace lumbrine {

// Posts every job to the system's main queue. The application's event loop runs that queue, also while a menu is open.
// The loop must live as long as the process; jobs posted after the event loop has ended never run.
//
// While timers are exact, the system neither groups nor delays them to save energy. Otherwise each may come late by a
// tenth of its interval.
class DispatchMainLoop final : public MainLoop {
public:
    // `end` makes the application's event loop return. It is called on the main thread.
    explicit DispatchMainLoop(std::function<void()> end) : end(std::move(end)) {}

    bool onMain() const override;
    void post(Task task) override;
    void postAfter(Duration delay, Task task) override;
    std::unique_ptr<RepeatingTimer> repeat(Duration interval, std::function<void()> tick) override;
    void stop() override;

    // A repeating timer follows at its next tick. At first timers are not exact. Any thread.
    void makeTimersExact(bool exact) { exactTimers = exact; }

private:
    const std::function<void()> end;
    std::atomic<bool> exactTimers{false};
};

} // namespace lumbrine
