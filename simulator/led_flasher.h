// The common rhythm of all flashing LEDs. HUI has no message for flashing, so the host sends on and off.
#pragma once

#include "platform/api/time.h"

namespace lumbrine {

// Runs only while something flashes, and begins with on.
class LEDFlasher {
public:
    LEDFlasher(Duration onFor, Duration offFor) : onFor(onFor), offFor(offFor) {}

    // Advances the rhythm to `now`. Returns true when the LEDs must change.
    bool advance(TimePoint now, bool somethingFlashes) {
        if (!somethingFlashes) {
            running = false;
            return false;
        }
        if (!running) {
            running = lit = true;
            nextChange = now + onFor;
            return true;
        }
        bool changed = false;
        while (now >= nextChange) {
            lit = !lit;
            nextChange += lit ? onFor : offFor;
            changed = !changed;
        }
        return changed;
    }

    bool isLit() const { return lit; }
    TimePoint nextDeadline() const { return running ? nextChange : TimePoint::max(); }

private:
    const Duration onFor;
    const Duration offFor;
    bool running = false;
    bool lit = false;
    TimePoint nextChange{};
};

} // namespace lumbrine
