#include "model/mirror/meters.h"

#include <algorithm>

namespace lumbrine {

void Meters::show(Strip strip, int side, int level) {
    const TimePoint now = runtime.now();
    const Lock lock(meterLock);
    meters[strip.slot() * 2 + static_cast<std::size_t>(side)] = {
        .level = static_cast<std::uint8_t>(std::min(level, maxLevel)), .shownAt = now};
}

Meters::Levels Meters::fall() {
    const TimePoint now = runtime.now();
    Levels levels{};
    const Lock lock(meterLock);
    for (std::size_t slot = 0; slot < meters.size(); ++slot) {
        Meter& meter = meters[slot];
        if (meter.level != 0 && now - meter.shownAt > hold) --meter.level;
        levels[slot] = meter.level;
    }
    return levels;
}

} // namespace lumbrine
