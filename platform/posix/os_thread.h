// What every OS has under a different call for threads: their names, cores, urgency, and waits with a time limit.
#pragma once

#include "platform/api/time.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string_view>

namespace lumbrine {

// Names the calling thread for debuggers and process listings. Linux has room for 15 bytes; longer names are cut.
void nameThisThread(std::string_view name);

// How urgent a thread's work is. macOS shares out processors, clock rates and timers by it (its quality-of-service
// classes); Linux does not need it.
enum class Urgency { utility, normal, userInitiated, userInteractive };

// Sets and returns the urgency of the calling thread; a new thread has normal urgency.
void setUrgency(Urgency urgency);
Urgency urgencyOfThisThread();

// Tells the system alone; `setUrgency` calls it when the urgency changes.
void applyUrgency(Urgency urgency);

// Waits until `changed` is notified, at most until `end`, which may already be over; may also return without a reason.
// Setting the computer's clock does not move `end`: the standard library of macOS would wait by that clock.
void waitUntil(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, TimePoint end);

// While this object lives, the thread that created it, and every thread which that thread starts, run on the current
// core. Threads of which only one runs at a time switch about ten times faster on one core. Does nothing on macOS,
// which has no such call. Destroy it on the thread that created it.
class StayOnThisCore {
public:
    StayOnThisCore();
    ~StayOnThisCore();
    StayOnThisCore(const StayOnThisCore&) = delete;
    StayOnThisCore& operator=(const StayOnThisCore&) = delete;

private:
    struct Before;
    std::unique_ptr<Before> before;
};

} // namespace lumbrine
