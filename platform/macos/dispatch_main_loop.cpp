#include "platform/macos/dispatch_main_loop.h"

#include "platform/api/runtime.h"
#include "platform/macos/autorelease_scope.h"

#include <dispatch/dispatch.h>
#include <pthread.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace lumbrine {

namespace {

// Each function that the system calls has an autorelease pool: the event loop's own is emptied after events only, and
// while another program is in front there are none.
void runAndDestroy(void* posted) {
    const AutoreleaseScope scope;
    const std::unique_ptr<Task> task(static_cast<Task*>(posted));
    (*task)();
}

dispatch_source_t strictTimer(void* context, dispatch_function_t handler) {
    const dispatch_source_t timer =
        dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, DISPATCH_TIMER_STRICT, dispatch_get_main_queue());
    dispatch_set_context(timer, context);
    dispatch_source_set_event_handler_f(timer, handler);
    return timer;
}

void begin(dispatch_source_t timer, Duration first, std::uint64_t interval) {
    dispatch_source_set_timer(timer, dispatch_time(DISPATCH_TIME_NOW, first.count()), interval, 0);
    dispatch_activate(timer);
}

struct DelayedTask {
    dispatch_source_t timer = nullptr;
    Task task;
};

void runDelayed(void* context) {
    const AutoreleaseScope scope;
    const std::unique_ptr<DelayedTask> delayed(static_cast<DelayedTask*>(context));
    dispatch_source_cancel(delayed->timer);
    dispatch_release(delayed->timer);
    delayed->task();
}

using Tick = std::function<void()>;

void callTick(void* context) {
    const AutoreleaseScope scope;
    (*static_cast<const Tick*>(context))();
}

// Called when the system has released the timer. That is never during a tick, even when the tick has destroyed the
// timer.
void destroyTick(void* context) {
    const AutoreleaseScope scope;
    delete static_cast<const Tick*>(context);
}

class DispatchTimer final : public RepeatingTimer {
public:
    DispatchTimer(Duration interval, Tick tick) : source(strictTimer(new Tick(std::move(tick)), callTick)) {
        const Duration step = std::max(interval, Duration{1});
        dispatch_set_finalizer_f(source, destroyTick);
        begin(source, step, static_cast<std::uint64_t>(step.count()));
    }

    ~DispatchTimer() override {
        dispatch_source_cancel(source);
        dispatch_release(source);
    }

    DispatchTimer(const DispatchTimer&) = delete;
    DispatchTimer& operator=(const DispatchTimer&) = delete;

private:
    const dispatch_source_t source;
};

} // namespace

bool DispatchMainLoop::onMain() const {
    return pthread_main_np() != 0;
}

void DispatchMainLoop::post(Task task) {
    dispatch_async_f(dispatch_get_main_queue(), new Task(std::move(task)), runAndDestroy);
}

void DispatchMainLoop::postAfter(Duration delay, Task task) {
    if (delay <= Duration::zero()) return post(std::move(task));
    auto delayed = std::make_unique<DelayedTask>();
    delayed->task = std::move(task);
    delayed->timer = strictTimer(delayed.get(), runDelayed);
    begin(delayed.release()->timer, delay, DISPATCH_TIME_FOREVER);
}

std::unique_ptr<RepeatingTimer> DispatchMainLoop::repeat(Duration interval, std::function<void()> tick) {
    return std::make_unique<DispatchTimer>(interval, std::move(tick));
}

void DispatchMainLoop::stop() {
    post([this] { end(); });
}

} // namespace lumbrine
