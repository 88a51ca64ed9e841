// The main loop of a program whose main thread runs the Mac's own event loop.
#pragma once

#include "platform/api/main_loop.h"

#include <functional>
#include <utility>

namespace lumbrine {

// Hands everything to the system's main queue, which the application's event loop empties, also while a menu is open.
// Timers are strict: the system neither gathers nor delays them to save energy. Lives as long as the process; what is
// posted after the event loop has ended goes with the process.
class DispatchMainLoop final : public MainLoop {
public:
    // `endEventLoop` has the application's event loop return; it is called on the main thread.
    explicit DispatchMainLoop(std::function<void()> endEventLoop) : end(std::move(endEventLoop)) {}

    bool onMain() const override;
    void post(Task task) override;
    void postAfter(Duration delay, Task task) override;
    std::unique_ptr<RepeatingTimer> repeat(Duration interval, std::function<void()> tick) override;
    void stop() override;

private:
    const std::function<void()> end;
};

} // namespace lumbrine
