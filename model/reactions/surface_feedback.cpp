#include "model/reactions/surface_feedback.h"

#include "model/bank/track_window.h"
#include "model/hands/automation_mode_text.h"

#include <cassert>

namespace lumbrine {

namespace {

constexpr int playPort = 4;
constexpr int recordPort = 5;

} // namespace

SurfaceFeedback::SurfaceFeedback(const Jobs& modelJobs, ReceiverState& receiverState, Parts otherParts)
    : jobs(modelJobs), state(receiverState), parts(otherParts) {}

void SurfaceFeedback::surfaceLog(const std::string& line) {
    parts.log.appendLog(line);
}

// ---- Faders

void SurfaceFeedback::faderFeedback(Strip strip, double value) {
    jobs.runOnMain([this, strip, value] { showFader(strip, value); });
}

void SurfaceFeedback::showFader(Strip strip, double value) {
    assert(jobs.runtime.onMain());
    state.published.faders[strip.slot()] = value;
    state.published.changed();
    const SurfaceMirror& mirror = state.mirror;
    const bool ownEcho =
        mirror.stripTouched[strip.slot()] && jobs.runtime.now() - mirror.lastClientFaderAt[strip.slot()] < echoSilence;
    if (!ownEcho) parts.mirror.sendFaderToClient(strip, value);
    parts.capture.captureSess(strip, value);
}

// ---- Names

void SurfaceFeedback::trackNameShown(Strip strip, std::string_view text) {
    if (parts.probe.waitsOn(strip))
        if (const auto mode = parseAutoModeText(text)) parts.probe.answer(strip, *mode);
    parts.nameClock.stamp();
    jobs.runOnMain([this, strip, name = std::string(trimSpaces(text))] { showName(strip, name); });
}

void SurfaceFeedback::showName(Strip strip, const std::string& name) {
    assert(jobs.runtime.onMain());
    std::string& cached = state.mirror.nameCache[strip.slot()];
    if (name == cached) return;
    cached = name;
    state.published.trackNames[strip.slot()] = name;
    state.published.changed();
    parts.mirror.sendTrackNameToClient(strip, name);
    parts.bankMap.relocalize();
}

// ---- Meters and V-Pot rings

void SurfaceFeedback::meterShown(Strip strip, int side, int level) {
    parts.meters.show(strip, side, level);
}

void SurfaceFeedback::vpotShown(Strip strip, int value, bool centre, bool rightSide) {
    jobs.runOnMain([this, strip, value, centre, side = rightSide ? 1 : 0] {
        state.mirror.panPos[static_cast<std::size_t>(side)][strip.slot()] = value;
        state.mirror.panCen[static_cast<std::size_t>(side)][strip.slot()] = centre;
        parts.mirror.sendPan(strip, side);
    });
}

// ---- LEDs

void SurfaceFeedback::ledShown(SurfaceID surface, int zone, int port, bool on) {
    if (const auto strip = Strip::of(surface, zone)) {
        jobs.runOnMain([this, strip = *strip, port, on] { showStripLed(strip, port, on); });
    } else if (surface == SurfaceID::A && zone == hui::transportZone) {
        jobs.runOnMain([this, port, on] { showTransportLed(port, on); });
    } else if (surface == SurfaceID::A && zone == hui::bankZone) {
        jobs.runOnMain([this, port, on] { showBankLed(port, on); });
    }
}

void SurfaceFeedback::showStripLed(Strip strip, int port, bool on) {
    switch (port) {
    case hui::selectPort:
        showSelect(strip, on);
        break;
    case hui::mutePort:
        parts.switches.muteLed(strip, on);
        break;
    case hui::soloPort:
        parts.switches.soloLed(strip, on);
        break;
    case hui::recArmPort:
        parts.switches.recLed(strip, on);
        break;
    default:
        break;
    }
}

void SurfaceFeedback::showSelect(Strip strip, bool on) {
    bool& cached = state.mirror.selectCache[strip.slot()];
    if (on == cached) return;
    cached = on;
    state.published.selects[strip.slot()] = on;
    state.published.changed();
    parts.mirror.sendSelectsToClient();
}

void SurfaceFeedback::showTransportLed(int port, bool on) {
    if (port != playPort && port != recordPort) return;
    (port == playPort ? state.mirror.transportPlaying : state.mirror.transportRecording) = on;
    parts.mirror.sendTransportIfChanged();
}

void SurfaceFeedback::showBankLed(int port, bool on) {
    const auto led = static_cast<std::size_t>(port);
    if (led < state.mirror.bankLed.size()) state.mirror.bankLed[led] = on;
}

// ---- Pings

void SurfaceFeedback::pingReceived(SurfaceID surface, int pingCount) {
    jobs.runOnMain([this, surface, pingCount] { notePing(surface, pingCount); });
}

void SurfaceFeedback::notePing(SurfaceID surface, int pingCount) {
    assert(jobs.runtime.onMain());
    const TimePoint now = jobs.runtime.now();
    TimePoint& last = surface == SurfaceID::A ? state.presence.lastPing : state.presence.lastPingB;
    if (now - last > pingPause) state.presence.firstPingAt = now;
    last = now;
    if (surface == SurfaceID::B) return;
    state.published.pingCount = pingCount;
    state.published.changed();
}

} // namespace lumbrine
