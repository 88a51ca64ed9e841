#include "platform/macos/testing/dispatch_calls.h"

#include <algorithm>
#include <deque>
#include <utility>
#include <vector>

struct FakeSource {
    void* context = nullptr;
    dispatch_function_t handler = nullptr;
    dispatch_function_t finalizer = nullptr;
    std::uint64_t due = DISPATCH_TIME_FOREVER;
    std::uint64_t interval = 0;
    std::uint64_t leeway = 0;
    bool active = false;
    bool cancelled = false;
    int references = 1;
};

namespace lumbrine::fakes {

namespace {

struct Dispatch {
    std::uint64_t now = 1'000'000'000;
    std::deque<std::pair<void*, dispatch_function_t>> jobs;
    std::vector<FakeSource*> sources;
    bool strict = true;
};

Dispatch& dispatch() {
    static Dispatch only;
    return only;
}

void release(FakeSource* source) {
    if (--source->references > 0) return;
    std::erase(dispatch().sources, source);
    if (source->finalizer != nullptr) source->finalizer(source->context);
    delete source;
}

// A timer fires as late as it may.
std::uint64_t latest(const FakeSource& source) {
    return source.due == DISPATCH_TIME_FOREVER ? source.due : source.due + source.leeway;
}

FakeSource* nextDue() {
    FakeSource* next = nullptr;
    for (FakeSource* source : dispatch().sources)
        if (source->active && !source->cancelled && (next == nullptr || latest(*source) < latest(*next))) next = source;
    return next;
}

void runJobs() {
    while (!dispatch().jobs.empty()) {
        const auto [context, work] = dispatch().jobs.front();
        dispatch().jobs.pop_front();
        work(context);
    }
}

void fire(FakeSource* source) {
    if (source->interval == DISPATCH_TIME_FOREVER) {
        source->due = DISPATCH_TIME_FOREVER;
    } else {
        source->due += source->interval * ((dispatch().now - source->due) / source->interval + 1);
    }
    ++source->references;
    source->handler(source->context);
    release(source);
}

} // namespace

void newDispatch() {
    dispatch() = Dispatch();
}

void runDispatch(std::uint64_t nanoseconds) {
    const std::uint64_t end = dispatch().now + nanoseconds;
    runJobs();
    for (FakeSource* next = nextDue(); next != nullptr && latest(*next) <= end; next = nextDue()) {
        dispatch().now = std::max(dispatch().now, latest(*next));
        fire(next);
        runJobs();
    }
    dispatch().now = end;
}

std::uint64_t dispatchNow() {
    return dispatch().now;
}

void stallDispatch(std::uint64_t nanoseconds) {
    dispatch().now += nanoseconds;
}

int liveSources() {
    return static_cast<int>(dispatch().sources.size());
}

bool everyTimerWasStrict() {
    return dispatch().strict;
}

} // namespace lumbrine::fakes

using namespace lumbrine::fakes;

dispatch_queue_t dispatch_get_main_queue() {
    return nullptr;
}

void dispatch_async_f(dispatch_queue_t, void* context, dispatch_function_t work) {
    dispatch().jobs.emplace_back(context, work);
}

dispatch_time_t dispatch_time(dispatch_time_t, std::int64_t delta) {
    return dispatch().now + static_cast<std::uint64_t>(delta);
}

dispatch_source_t dispatch_source_create(dispatch_source_type_t, std::uintptr_t, std::uintptr_t mask,
                                         dispatch_queue_t) {
    dispatch().strict = dispatch().strict && mask == DISPATCH_TIMER_STRICT;
    return dispatch().sources.emplace_back(new FakeSource());
}

void dispatch_set_context(dispatch_source_t source, void* context) {
    source->context = context;
}
void dispatch_set_finalizer_f(dispatch_source_t source, dispatch_function_t finalizer) {
    source->finalizer = finalizer;
}
void dispatch_source_set_event_handler_f(dispatch_source_t source, dispatch_function_t handler) {
    source->handler = handler;
}

void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start, std::uint64_t interval,
                               std::uint64_t leeway) {
    source->due = start;
    source->interval = interval;
    source->leeway = leeway;
}

void dispatch_activate(dispatch_source_t source) {
    source->active = true;
}
void dispatch_source_cancel(dispatch_source_t source) {
    source->cancelled = true;
}
void dispatch_release(dispatch_source_t source) {
    release(source);
}
int pthread_main_np() {
    return 1;
}
