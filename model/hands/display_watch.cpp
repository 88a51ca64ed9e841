#include "model/hands/display_watch.h"

#include "model/hands/automation_mode_text.h"

#include <utility>

namespace lumbrine {

void DisplayWatch::shown(Strip strip, std::string_view text) {
    if (const auto mode = parseAutoModeText(text)) {
        const Lock lock(autoProbeLock);
        if (autoProbeStrip == strip) autoProbeResult = *mode;
    }
    const TimePoint now = runtime.now();
    const Lock lock(nameClock);
    lastNameChange = now;
}

Duration DisplayWatch::age() {
    const TimePoint now = runtime.now();
    const Lock lock(nameClock);
    return now - lastNameChange;
}

void DisplayWatch::beginProbe(Strip strip) {
    const Lock lock(autoProbeLock);
    autoProbeStrip = strip;
    autoProbeResult = autoModeUnknown;
}

std::uint8_t DisplayWatch::endProbe() {
    const Lock lock(autoProbeLock);
    autoProbeStrip.reset();
    return autoProbeResult;
}

} // namespace lumbrine
