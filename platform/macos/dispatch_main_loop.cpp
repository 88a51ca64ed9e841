#include "platform/macos/dispatch_main_loop.h"

#include "platform/api/runtime.h"

#include <dispatch/dispatch.h>
#include <pthread.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace lumbrine {

namespace {

void runAndDestroy(void* posted) {
    const std::unique_ptr<Task> task(static_cast<Task*>(posted));
    (*task)();
}

// What the system holds on to for one timer. Shared, because a tick may destroy its own timer.
using SharedTick = std::shared_ptr<const std::function<void()>>;

void callTick(void* context) {
    const SharedTick tick = *static_cast<SharedTick*>(context);
    (*tick)();
}

void destroyTick(void* context) {
    delete static_cast<SharedTick*>(context);
}

class DispatchTimer final : public RepeatingTimer {
public:
    DispatchTimer(Duration interval, std::function<void()> tick)
        : source(dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, DISPATCH_TIMER_STRICT,
                                        dispatch_get_main_queue())) {
        const Duration step = std::max(interval, Duration{1});
        dispatch_set_context(source, new SharedTick(std::make_shared<std::function<void()>>(std::move(tick))));
        dispatch_set_finalizer_f(source, destroyTick);
        dispatch_source_set_event_handler_f(source, callTick);
        dispatch_source_set_timer(source, dispatch_time(DISPATCH_TIME_NOW, step.count()),
                                  static_cast<std::uint64_t>(step.count()), 0);
        dispatch_activate(source);
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
    dispatch_after_f(dispatch_time(DISPATCH_TIME_NOW, delay.count()), dispatch_get_main_queue(),
                     new Task(std::move(task)), runAndDestroy);
}

std::unique_ptr<RepeatingTimer> DispatchMainLoop::repeat(Duration interval, std::function<void()> tick) {
    return std::make_unique<DispatchTimer>(interval, std::move(tick));
}

} // namespace lumbrine
