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

// "Strict" is about the leeway: the system keeps within it.
dispatch_source_t strictTimer(void* context, dispatch_function_t handler) {
    const dispatch_source_t timer =
        dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, DISPATCH_TIMER_STRICT, dispatch_get_main_queue());
    dispatch_set_context(timer, context);
    dispatch_source_set_event_handler_f(timer, handler);
    return timer;
}

void set(dispatch_source_t timer, Duration first, std::uint64_t interval, bool isExact) {
    const auto leeway = isExact ? 0 : static_cast<std::uint64_t>(first.count()) / 10;
    dispatch_source_set_timer(timer, dispatch_time(DISPATCH_TIME_NOW, first.count()), interval, leeway);
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

// What a repeating timer calls. It lives until the system has released the timer's source. That is never during a tick,
// even when the tick has destroyed the timer.
class Repetition {
public:
    Repetition(Duration interval, std::function<void()> tick, const std::atomic<bool>& exact)
        : source(strictTimer(this, call)), interval(std::max(interval, Duration{1})), tick(std::move(tick)),
          exact(exact) {
        dispatch_set_finalizer_f(source, destroy);
        setSource();
        dispatch_activate(source);
    }

    const dispatch_source_t source;

private:
    static void call(void* context) {
        const AutoreleaseScope scope;
        auto& self = *static_cast<Repetition*>(context);
        if (self.isExact != self.exact) self.setSource();
        self.tick();
    }

    static void destroy(void* context) {
        const AutoreleaseScope scope;
        delete static_cast<const Repetition*>(context);
    }

    void setSource() {
        isExact = exact;
        set(source, interval, static_cast<std::uint64_t>(interval.count()), isExact);
    }

    const Duration interval;
    const std::function<void()> tick;
    const std::atomic<bool>& exact; // as it is wanted
    bool isExact = false;           // as the source is set
};

class DispatchTimer final : public RepeatingTimer {
public:
    explicit DispatchTimer(const Repetition* repetition) : source(repetition->source) {}

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
    const dispatch_source_t timer = delayed.release()->timer;
    set(timer, delay, DISPATCH_TIME_FOREVER, exactTimers);
    dispatch_activate(timer);
}

std::unique_ptr<RepeatingTimer> DispatchMainLoop::repeat(Duration interval, std::function<void()> tick) {
    return std::make_unique<DispatchTimer>(new Repetition(interval, std::move(tick), exactTimers));
}

void DispatchMainLoop::stop() {
    post([this] { end(); });
}

} // namespace lumbrine
