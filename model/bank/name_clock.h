// When Pro Tools last sent a display text: how the jobs that move the banks know that the surfaces have settled.
#pragma once

#include "platform/api/runtime.h"

namespace lumbrine {

class NameClock {
public:
    explicit NameClock(Runtime& rt) : runtime(rt), nameClock(rt) {}

    // A text came. Any thread.
    void stamp() {
        const TimePoint now = runtime.now();
        const Lock lock(nameClock);
        lastNameChange = now;
    }

    // How long no text has come. Any thread.
    Duration age() {
        const TimePoint now = runtime.now();
        const Lock lock(nameClock);
        return now - lastNameChange;
    }

private:
    Runtime& runtime;
    Mutex nameClock;
    TimePoint lastNameChange LUMBRINE_GUARDED_BY(nameClock) = distantPast;
};

} // namespace lumbrine
