#include "model/tracks/service_patience.h"

#include <algorithm>

namespace lumbrine {

bool ServicePatience::mayAsk() {
    if (ticksLeft > 0) --ticksLeft;
    return ticksLeft == 0;
}

bool ServicePatience::mayAskAtOnce(TimePoint now) {
    if (!failingSince) return false; // the tick asks soon enough
    pause = 1;
    ticksLeft = 0;
    return now - lastFailure >= tick;
}

void ServicePatience::answered() {
    *this = ServicePatience();
}

bool ServicePatience::failed(TimePoint asked, TimePoint now, bool isRunning) {
    const bool isFirst = !failingSince;
    if (isFirst) failingSince = asked;
    lastFailure = now;
    ticksLeft = isRunning ? pause : 0;
    pause = isRunning ? std::min(2 * pause, longestPause) : 1;
    return isFirst;
}

} // namespace lumbrine
