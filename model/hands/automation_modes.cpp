#include "model/hands/automation_modes.h"

#include "model/hands/automation_mode_text.h"

#include <cassert>

namespace lumbrine {

namespace {

constexpr Duration pollAllInterval = seconds(3.0);

} // namespace

AutomationModes::AutomationModes(const Jobs& jobs, ReceiverState& state, ActivityLog& log, SurfaceDesk& desk,
                                 DisplayWatch& displays, ClientMirror& mirror)
    : jobs(jobs), state(state), log(log), desk(desk), displays(displays), mirror(mirror),
      autoQueue(jobs.runtime.serialQueue("com.tarnwick.lumbrine.automode", Priority::userInitiated)) {}

// ---- Reading

std::uint8_t AutomationModes::autoProbe(Strip strip, const std::function<void()>& whileHeld) {
    displays.beginProbe(strip);
    desk.holdAuto(strip, whileHeld);
    return displays.endProbe();
}

void AutomationModes::pollAutoMode(Strip strip) {
    jobs.onQueue(queue(), [this, strip] {
        if (jobs.runtime.syncMain([this, strip] { return mayProbe(strip); })) autoModeUpdate(strip, autoProbe(strip));
    });
}

// A probe under the client's finger would end its touch in some modes; one while the banks move asks a track that is
// gone before it answers.
bool AutomationModes::mayProbe(Strip strip) const {
    return state.published.huiConnected && state.quiet() && !state.transportRunning() &&
           !state.published.strip(strip).touched;
}

void AutomationModes::pollAllAutoModes() {
    assert(jobs.runtime.onMain());
    const TimePoint now = jobs.runtime.now();
    if (now - state.lastAutoPollAll <= pollAllInterval) return;
    state.lastAutoPollAll = now;
    for (int i = 0; i < state.published.winW; ++i)
        pollAutoMode(*Strip::of(i));
}

void AutomationModes::autoModeUpdate(Strip strip, std::uint8_t code) {
    if (code == autoModeUnknown) return;
    jobs.runOnMain([this, strip, code] {
        if (std::exchange(state.published.strip(strip).mode, code) != code) mirror.sendAutoModesIfChanged();
    });
}

// ---- Setting

std::uint8_t AutomationModes::pressMode(Strip strip, int modePort) {
    return autoProbe(strip, [this, strip, modePort] { desk.pressMode(strip, modePort); });
}

void AutomationModes::setAutoMode(Strip strip, int modePort) {
    jobs.onQueue(queue(), [this, strip, modePort] {
        autoModeUpdate(strip, pressMode(strip, modePort));
        jobs.runOnMain([this, strip] { logMode(strip); });
    });
}

void AutomationModes::logMode(Strip strip) {
    const std::string channel = "← auto ch" + std::to_string(strip.index() + 1);
    const std::string mode = autoModeName(state.published.strip(strip).mode, log.text);
    log.say(channel + " mode changed → " + mode, channel + " モード変更 → " + mode);
}

} // namespace lumbrine
