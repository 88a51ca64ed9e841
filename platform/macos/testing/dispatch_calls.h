// For tests of the main loop on other systems: a fake of the dispatch functions that it calls. The test moves its time.
#pragma once

#include <cstdint>

struct FakeQueue;
struct FakeSource;
using dispatch_queue_t = FakeQueue*;
using dispatch_source_t = FakeSource*;
using dispatch_function_t = void (*)(void*);
using dispatch_time_t = std::uint64_t;
using dispatch_source_type_t = int;

inline constexpr dispatch_time_t DISPATCH_TIME_NOW = 0;
inline constexpr dispatch_time_t DISPATCH_TIME_FOREVER = ~std::uint64_t{0};
inline constexpr std::uintptr_t DISPATCH_TIMER_STRICT = 1;
inline constexpr dispatch_source_type_t DISPATCH_SOURCE_TYPE_TIMER = 1;

extern "C" {
dispatch_queue_t dispatch_get_main_queue();
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t delta);
dispatch_source_t dispatch_source_create(dispatch_source_type_t type, std::uintptr_t handle, std::uintptr_t mask,
                                         dispatch_queue_t queue);
void dispatch_set_context(dispatch_source_t source, void* context);
void dispatch_set_finalizer_f(dispatch_source_t source, dispatch_function_t finalizer);
void dispatch_source_set_event_handler_f(dispatch_source_t source, dispatch_function_t handler);
void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start, std::uint64_t interval,
                               std::uint64_t leeway);
void dispatch_activate(dispatch_source_t source);
void dispatch_source_cancel(dispatch_source_t source);
void dispatch_release(dispatch_source_t source);
int pthread_main_np();
}

namespace lumbrine::fakes {

void newDispatch();

// Lets time pass and runs everything that becomes due, in order; timers as late as their leeway allows.
void runDispatch(std::uint64_t nanoseconds);
std::uint64_t dispatchNow();

// Lets time pass while the event loop is blocked: nothing runs, and a timer that comes due more than once fires once.
void stallDispatch(std::uint64_t nanoseconds);

int liveSources();
bool everyTimerWasStrict();

} // namespace lumbrine::fakes
