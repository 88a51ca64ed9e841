// The event loop that runs on the main thread: our own loop in a headless program, the toolkit's loop in a desktop
// shell. The real runtime uses it as its main queue.
#pragma once

#include "platform/api/task.h"
#include "platform/api/time.h"

#include <functional>
#include <memory>

namespace lumbrine {

class RepeatingTimer;

// The place of a delayed job or a timer tick among the jobs that other threads posted while the main thread was busy.
enum class TimerOrder {
    whenSeen, // after every job posted before the loop looks at its timers again
    whenDue   // before jobs posted after it became due, as on the Mac's main queue
};

class MainLoop {
public:
    virtual ~MainLoop() = default;

    // True on the thread that runs the loop. Before the loop runs: on the thread that created it.
    virtual bool onMain() const = 0;

    // Any thread. Jobs posted by one thread run in the order in which it posted them. A job posted after the loop has
    // ended never runs; it is destroyed with the loop.
    virtual void post(Task task) = 0;
    virtual void postAfter(Duration delay, Task task) = 0;

    // See Runtime::repeatOnMain.
    virtual std::unique_ptr<RepeatingTimer> repeat(Duration interval, std::function<void()> tick) = 0;

    // Makes the loop return after the current job. A loop that is not running yet returns as soon as it is run. Any
    // thread.
    virtual void stop() = 0;
};

} // namespace lumbrine
