#include "model/hands/display_watch.h"

#include "base/blank_text.h"
#include "model/hands/automation_mode_text.h"

#include <utility>

namespace lumbrine {

bool DisplayWatch::shown(Strip strip, std::string_view text) {
    if (holdBack(strip, trimSpaces(text))) return true;
    noteName();
    const TimePoint now = runtime.now();
    const Lock lock(nameClock);
    reaction.shown(now);
    return false;
}

bool DisplayWatch::holdBack(Strip strip, std::string_view text) {
    const auto mode = parseAutoModeText(text);
    const TimePoint now = runtime.now();
    const Lock lock(autoProbeLock);
    Display& display = shownTexts[strip.slot()];
    const bool isProbed = autoProbeStrip == strip;
    if (mode && isProbed) {
        const std::uint8_t before = std::exchange(autoProbeResult, *mode);
        if (before != autoModeUnknown && before != *mode) autoProbeChanged = true;
    }
    const bool mayBeMode = mode || (!text.empty() && !display.held && !display.namesCome);
    if (mayBeMode && (isProbed || now < display.heldUntil) && text != display.name) {
        display.held = text;
        return true;
    }
    // The name is back after the mode.
    if (display.held && !isProbed) display.heldUntil = now;
    display.held.reset();
    display.name = text;
    return false;
}

void DisplayWatch::noteName() {
    const TimePoint now = runtime.now();
    const Lock lock(nameClock);
    lastNameChange = now;
}

Duration DisplayWatch::age() {
    const TimePoint now = runtime.now();
    const Lock lock(nameClock);
    return now - lastNameChange;
}

void DisplayWatch::pressed() {
    expectNames();
    const TimePoint now = runtime.now();
    const Lock lock(nameClock);
    reaction.pressed(now);
}

Duration DisplayWatch::usualReaction() {
    const Lock lock(nameClock);
    return reaction.usual();
}

Duration DisplayWatch::longestReaction() {
    const Lock lock(nameClock);
    return reaction.patience();
}

void DisplayWatch::beginProbe(Strip strip) {
    const Lock lock(autoProbeLock);
    autoProbeStrip = strip;
    autoProbeResult = autoModeUnknown;
    autoProbeChanged = false;
    shownTexts[strip.slot()].namesCome = false;
}

bool DisplayWatch::modeHasChanged() {
    const Lock lock(autoProbeLock);
    return autoProbeChanged;
}

void DisplayWatch::expectNames() {
    const Lock lock(autoProbeLock);
    for (Display& display : shownTexts)
        display.namesCome = true;
}

std::uint8_t DisplayWatch::endProbe() {
    const TimePoint now = runtime.now();
    const Lock lock(autoProbeLock);
    if (autoProbeStrip) shownTexts[autoProbeStrip->slot()].heldUntil = now + nameReturns;
    autoProbeStrip.reset();
    return autoProbeResult;
}

void DisplayWatch::settle(Strip strip) {
    const TimePoint now = runtime.now();
    std::optional<std::string> name;
    {
        const Lock lock(autoProbeLock);
        Display& display = shownTexts[strip.slot()];
        if (autoProbeStrip == strip || now < display.heldUntil) return;
        display.heldUntil = distantPast; // also for a text whose thread has read the clock before
        name = std::exchange(display.held, std::nullopt);
        if (name) display.name = *name;
    }
    if (!name) return;
    noteName();
    onNameAfterAll(strip, *name);
}

} // namespace lumbrine
