#include "model/hands/automation_modes.h"

#include "model/hands/automation_mode_text.h"

#include <cassert>

namespace lumbrine {

namespace {

constexpr Duration settleBeforeAction = seconds(0.05);
constexpr Duration pressTime = seconds(0.06);
constexpr Duration displayTime = seconds(0.15);
constexpr Duration pollAllInterval = seconds(3.0);

} // namespace

AutomationModes::AutomationModes(const Jobs& modelJobs, ReceiverState& receiverState, Surfaces& hostSurfaces,
                                 ClientMirror& client, ProbeExchange& probeExchange, ActivityLog& activityLog,
                                 Bilingual bilingual)
    : jobs(modelJobs), state(receiverState), surfaces(hostSurfaces), mirror(client), exchange(probeExchange),
      log(activityLog), text(bilingual),
      autoQueue(jobs.runtime.serialQueue("com.tarnwick.lumbrine.automode", Priority::userInitiated)) {}

std::uint8_t AutomationModes::autoProbe(Strip strip, const std::function<void()>& whileHeld) {
    HUIEngine& engine = surfaces.engineOf(strip);
    exchange.begin(strip);
    engine.switchEdge(strip.engineStrip(), hui::autoPort, true);
    if (whileHeld) {
        jobs.runtime.sleepFor(settleBeforeAction);
        whileHeld();
    }
    jobs.runtime.sleepFor(displayTime);
    engine.switchEdge(strip.engineStrip(), hui::autoPort, false);
    return exchange.end();
}

void AutomationModes::pollAutoMode(Strip strip) {
    jobs.onQueue(queue(), [this, strip] {
        if (jobs.runtime.syncMain([this, strip] { return mayProbe(strip); })) autoModeUpdate(strip, autoProbe(strip));
    });
}

bool AutomationModes::mayProbe(Strip strip) const {
    return state.published.huiConnected && state.quiet() && !state.transportRunning() &&
           !state.mirror.stripTouched[strip.slot()];
}

void AutomationModes::pollAllAutoModes() {
    assert(jobs.runtime.onMain());
    const TimePoint now = jobs.runtime.now();
    if (now - state.automation.lastAutoPollAll <= pollAllInterval) return;
    state.automation.lastAutoPollAll = now;
    for (int i = 0; i < state.published.winW; ++i)
        pollAutoMode(*Strip::of(i));
}

void AutomationModes::autoModeUpdate(Strip strip, std::uint8_t code) {
    if (code == autoModeUnknown) return;
    jobs.runOnMain([this, strip, code] {
        std::uint8_t& cached = state.automation.autoModeCache[strip.slot()];
        if (cached == code) return;
        cached = code;
        mirror.sendAutoModesIfChanged();
    });
}

std::uint8_t AutomationModes::pressMode(Strip strip, int modePort) {
    HUIEngine& engine = surfaces.engineOf(strip);
    return autoProbe(strip, [this, &engine, modePort] {
        engine.switchEdge(hui::autoModeZone, modePort, true);
        jobs.runtime.sleepFor(pressTime);
        engine.switchEdge(hui::autoModeZone, modePort, false);
    });
}

void AutomationModes::setAutoMode(Strip strip, int modePort) {
    jobs.onQueue(queue(), [this, strip, modePort] {
        autoModeUpdate(strip, pressMode(strip, modePort));
        jobs.runOnMain([this, strip] { logMode(strip); });
    });
}

void AutomationModes::logMode(Strip strip) {
    log.appendLog("← auto ch" + std::to_string(strip.index() + 1) + text(" mode changed → ", " モード変更 → ") +
                  autoModeName(state.automation.autoModeCache[strip.slot()], text));
}

} // namespace lumbrine
