#include "model/mirror/meters.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

bool Meters::show(Strip strip, int side, int level) {
    const TimePoint now = runtime.now();
    const Lock lock(meterLock);
    meters[strip.slot() * 2 + static_cast<std::size_t>(side)] = {
        .level = static_cast<std::uint8_t>(std::min(level, maxLevel)), .shownAt = now};
    if (level == 0) return false;
    lastLevelAt = now;
    return std::exchange(resting, false);
}

Meters::Levels Meters::fall() {
    const TimePoint now = runtime.now();
    Levels levels{};
    const Lock lock(meterLock);
    for (std::size_t slot = 0; slot < meters.size(); ++slot) {
        Meter& meter = meters[slot];
        const Duration age = now - meter.shownAt;
        if (age > hold + (maxLevel + 1) * step) meter.level = 0; // nobody has called for a while
        if (age > hold && meter.level != 0) --meter.level;
        levels[slot] = meter.level;
    }
    return levels;
}

bool Meters::atRest() {
    const TimePoint now = runtime.now();
    const Lock lock(meterLock);
    if (now - lastLevelAt >= restAfter) resting = true;
    return resting;
}

} // namespace lumbrine
