// Which switches the client's hands use.
#pragma once

#include "base/strip.h"
#include "surface/hui_engine.h"

namespace lumbrine {

constexpr bool onThisSurface(int strip) {
    return strip >= 0 && strip < stripsPerSurface;
}

// Of a strip, all but AUTO, which only jobs hold.
constexpr bool isHandSwitch(int zone, int port) {
    return onThisSurface(zone) && port != hui::autoPort;
}

} // namespace lumbrine
