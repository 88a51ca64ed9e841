// The event loop whose thread is the main thread: the program's own when headless, the toolkit's in a desktop shell.
// The real runtime drains its main queue through it.
#pragma once

#include "platform/api/task.h"
#include "platform/api/time.h"

#include <functional>
#include <memory>

namespace lumbrine {

class RepeatingTimer;

// Where the events of delayed jobs and timers stand among the jobs that other threads posted while the main thread was
// busy.
enum class TimerOrder {
    whenSeen, // after all that was posted before the loop looks at its timers again
    whenDue   // where they became due, as on the Mac's main queue
};

class MainLoop {
public:
    virtual ~MainLoop() = default;

    // True on the thread that runs the loop (before it runs: the thread that made it).
    virtual bool onMain() const = 0;

    // From any thread. In order for jobs of one thread. A job posted after the loop has ended is dropped when the loop
    // is destroyed.
    virtual void post(Task task) = 0;
    virtual void postAfter(Duration delay, Task task) = 0;

    // As Runtime::repeatOnMain.
    virtual std::unique_ptr<RepeatingTimer> repeat(Duration interval, std::function<void()> tick) = 0;

    // Has the loop return after the job that it is in; when it has yet to run, at once. Any thread.
    virtual void stop() = 0;
};

} // namespace lumbrine
