#include "model/hands/display_watch.h"

#include "model/hands/automation_mode_text.h"

#include <utility>

namespace lumbrine {

bool DisplayWatch::shown(Strip strip, std::string_view text) {
    if (takeForMode(strip, text)) return true;
    const TimePoint now = runtime.now();
    const Lock lock(nameClock);
    lastNameChange = now;
    return false;
}

bool DisplayWatch::takeForMode(Strip strip, std::string_view text) {
    const auto mode = parseAutoModeText(text);
    const Lock lock(autoProbeLock);
    takenForMode[strip.slot()].reset();
    if (!mode || autoProbeStrip != strip) return false;
    autoProbeResult = *mode;
    takenForMode[strip.slot()] = std::string(text);
    return true;
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

void DisplayWatch::settle(Strip strip) {
    std::optional<std::string> name;
    {
        const Lock lock(autoProbeLock);
        if (autoProbeStrip != strip) name = std::exchange(takenForMode[strip.slot()], std::nullopt);
    }
    if (name) onNameAfterAll(strip, *name);
}

} // namespace lumbrine
