#include "simulator/wire_faults.h"

#include "simulator/seeded_random.h"

namespace lumbrine {

bool WireFaults::takeOne(std::atomic<int>& wanted) {
    int count = wanted;
    while (count > 0)
        if (wanted.compare_exchange_weak(count, count - 1)) return true;
    return false;
}

WireFault WireFaults::draw() {
    if (takeOne(resets)) return WireFault::reset;
    if (takeOne(goAways)) return WireFault::goAway;
    if (takeOne(deaths)) return WireFault::die;
    if (resting) return WireFault::none;
    SeededRandom chance(firstSeed + drawn++);
    const auto happens = [&](int oneIn) { return oneIn > 0 && chance.oneIn(static_cast<std::uint64_t>(oneIn)); };
    if (happens(options.resetOneIn)) return WireFault::reset;
    if (happens(options.goAwayOneIn)) return WireFault::goAway;
    if (happens(options.dieOneIn)) return WireFault::die;
    return WireFault::none;
}

void WireFaults::next(WireFault fault, int calls) {
    switch (fault) {
    case WireFault::reset:
        resets = calls;
        break;
    case WireFault::goAway:
        goAways = calls;
        break;
    case WireFault::die:
        deaths = calls;
        break;
    case WireFault::none:
        break;
    }
}

void WireFaults::rest() {
    resting = true;
    resets = goAways = deaths = 0;
}

} // namespace lumbrine
