// The toolkit's event loop as the main loop of the program.
#pragma once

#include "platform/api/main_loop.h"

#include <memory>

namespace lumbrine {

// Jobs run between the toolkit's own events, also while a menu or a dialog runs a loop of its own. May be made before
// the application object, so that signals have somewhere to go from the beginning; the thread that makes it is the main
// thread.
class QtMainLoop final : public MainLoop {
public:
    QtMainLoop();
    ~QtMainLoop() override;

    // Runs the application's event loop on the main thread until `stop`, or until something else ends it, as the window
    // system does when the user logs out. Jobs go on then when it is called again.
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
