// The main loop on Qt's event loop.
#pragma once

#include "platform/api/main_loop.h"

#include <memory>

namespace lumbrine {

// Jobs run between Qt's own events, also while a menu or a dialog runs a nested event loop. It may be created before
// the QApplication, so that the signal handling can use it from the start. The thread that creates it is the main
// thread.
class QtMainLoop final : public MainLoop {
public:
    QtMainLoop();
    ~QtMainLoop() override;

    // Runs the application's event loop on the main thread until `stop`, or until something else ends it, such as the
    // window system at logout. In the second case it may be called again, and the remaining jobs run then.
    void run();

    bool onMain() const override;
    void post(Task task) override;
    void postAfter(Duration delay, Task task) override;
    std::unique_ptr<RepeatingTimer> repeat(Duration interval, std::function<void()> tick) override;
    void stop() override;

private:
    class Jobs;

    const std::unique_ptr<Jobs> jobs;
};

} // namespace lumbrine
