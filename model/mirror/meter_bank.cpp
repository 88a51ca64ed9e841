#include "model/mirror/meter_bank.h"

#include <algorithm>

namespace lumbrine {

MeterBank::MeterBank(Runtime& rt) : runtime(rt), meterLock(rt) {
    meterUpdated.fill(distantPast);
}

void MeterBank::show(Strip strip, int side, int level) {
    const std::size_t slot = strip.slot() * 2 + static_cast<std::size_t>(side);
    const TimePoint now = runtime.now();
    const Lock lock(meterLock);
    meterCache[slot] = static_cast<std::uint8_t>(std::min(level, maxLevel));
    meterUpdated[slot] = now;
}

MeterBank::Levels MeterBank::fall() {
    const TimePoint now = runtime.now();
    const Lock lock(meterLock);
    for (std::size_t slot = 0; slot < meterCache.size(); ++slot)
        if (meterCache[slot] != 0 && now - meterUpdated[slot] > hold) --meterCache[slot];
    return meterCache;
}

} // namespace lumbrine
