#include "model/reactions/surface_feedback.h"

#include "base/blank_text.h"
#include "model/hands/display_text.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

namespace {

constexpr int playPort = 4;
constexpr int recordPort = 5;

} // namespace

SurfaceFeedback::SurfaceFeedback(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts)
    : jobs(jobs), state(state), log(log), parts(parts) {
    parts.displays.onNameAfterAll = [this](Strip strip, const std::string& text) { noteName(strip, trimSpaces(text)); };
    parts.mirror.onNameTold = [&surfaces = parts.surfaces](Strip strip, std::string_view name, Ownership owner) {
        surfaces.tellLabel(strip, name, isNameOnDisplay(name), owner);
    };
}

void SurfaceFeedback::surfaceLog(const std::string& line) {
    log.appendLog(line);
}

// ---- Faders

void SurfaceFeedback::faderFeedback(Strip strip, double value) {
    jobs.runOnMain([this, strip, value] { showFader(strip, value); });
}

void SurfaceFeedback::showFader(Strip strip, double value) {
    assert(jobs.runtime.onMain());
    StripState& shown = state.published.strip(strip);
    shown.fader = value;
    shown.shownFader = value;
    shown.faderUnsure = false;
    if (shown.mayKeepFaderBack(jobs.runtime.now())) state.published.health.fadersFollow = true;
    state.published.changed();
    const bool ownEcho = shown.touched && jobs.runtime.now() - shown.movedByClient < echoSilence;
    if (!ownEcho) parts.mirror.sendFaderToClient(strip, value);
    parts.capture.faderShown(strip);
}

void SurfaceFeedback::believeFaders() {
    assert(jobs.runtime.onMain());
    for (int i = 0; i < stripCount; ++i) {
        const Strip strip = *Strip::of(i);
        StripState& shown = state.published.strip(strip);
        if (shown.mayKeepFaderBack(jobs.runtime.now())) continue;
        const bool followed = shown.faderUnsure || shown.fader == shown.shownFader;
        if (!followed && shown.movedByClient != distantPast) state.published.health.fadersFollow = false;
        if (!shown.believeShownFader()) continue;
        state.published.changed();
        if (i < state.published.winW) parts.mirror.sendFaderToClient(strip, shown.fader);
        parts.capture.faderShown(strip);
    }
}

// ---- Names

// A text that is held back may be another track's name for all that: hands leave it alone until that is known.
void SurfaceFeedback::trackNameShown(Strip strip, std::string_view text) {
    const std::string_view name = trimSpaces(text);
    if (parts.displays.shown(strip, text)) {
        parts.surfaces.showLabel(strip, name, isNameOnDisplay(name));
    } else {
        noteName(strip, name);
    }
}

// The hands are let go at once: the main thread may be late.
void SurfaceFeedback::noteName(Strip strip, std::string_view name) {
    const bool isOther = parts.surfaces.showLabel(strip, name, isNameOnDisplay(name));
    jobs.runOnMain([this, strip, name = std::string(name), isOther] {
        if (isOther) endHands(strip);
        showName(strip, name);
        if (isOther) forgetMode(strip);
    });
}

void SurfaceFeedback::endHands(Strip strip) {
    StripState& shown = state.published.strip(strip);
    if (!parts.surfaces.engineOf(strip).isDown(strip.engineStrip(), hui::touchPort))
        shown.liftFinger(jobs.runtime.now());
    shown.panSeek.reset();
}

// It was the former track's; the AUTO LED or the next poll tells the new one's.
void SurfaceFeedback::forgetMode(Strip strip) {
    state.published.strip(strip).mode = autoModeUnknown;
    parts.mirror.sendAutoModesIfChanged();
}

void SurfaceFeedback::showName(Strip strip, const std::string& name) {
    assert(jobs.runtime.onMain());
    StripState& changed = state.published.strip(strip);
    if (std::exchange(changed.name, name) == name) return;
    changed.forgetHiddenPan(state.published.panRight);
    for (StripState& any : state.published.strips)
        any.mayHaveAnotherTrack(jobs.runtime.now());
    state.published.changed();
    parts.mirror.sendTrackNameToClient(strip, name);
    parts.bankMap.relocalize();
    if (std::ranges::all_of(state.published.shownStrips(), isBlank, &StripState::name))
        parts.calibration.displaysEmptied();
    parts.capture.namesShown();
    parts.metadata.somethingHappened();
}

// ---- Meters and V-Pot rings

void SurfaceFeedback::meterShown(Strip strip, int side, int level) {
    if (parts.meters.show(strip, side, level)) jobs.runOnMain([this] { onMetersMove(); });
}

void SurfaceFeedback::vpotShown(Strip strip, int value, bool centre, bool rightSide) {
    jobs.runOnMain([this, strip, value, centre, side = rightSide ? 1 : 0] {
        StripState& shown = state.published.strip(strip);
        shown.shownRing = {.position = value, .centre = centre};
        shown.pan[static_cast<std::size_t>(side)] = *shown.shownRing;
        parts.mirror.sendPan(strip, side);
    });
}

// ---- LEDs

void SurfaceFeedback::ledShown(SurfaceID surface, int zone, int port, bool on) {
    if (const auto strip = Strip::of(surface, zone)) {
        jobs.runOnMain([this, strip = *strip, port, on] { showStripLed(strip, port, on); });
    } else if (surface == SurfaceID::A && zone == hui::transportZone) {
        jobs.runOnMain([this, port, on] { showTransportLed(port, on); });
    }
}

void SurfaceFeedback::autoLedShown(Strip strip, AutoLedColour colour) {
    jobs.runOnMain([this, strip, colour] { parts.automation.ledShown(strip, colour); });
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
    if (std::exchange(state.published.strip(strip).select, on) == on) return;
    state.published.changed();
    parts.mirror.sendSelectsToClient();
    parts.capture.selectsShown();
}

void SurfaceFeedback::showTransportLed(int port, bool on) {
    if (port != playPort && port != recordPort) return;
    (port == playPort ? state.transportPlaying : state.transportRecording) = on;
    parts.mirror.sendTransportIfChanged();
}

// ---- Pings

void SurfaceFeedback::pingReceived(SurfaceID surface, int pingCount, TimePoint at) {
    std::atomic<TimePoint>& last = surface == SurfaceID::A ? state.presence.lastPing : state.presence.lastPingB;
    const TimePoint before = last.exchange(at);
    jobs.runOnMain([this, surface, pingCount, at, before] { notePing(surface, pingCount, at, before); });
}

void SurfaceFeedback::notePing(SurfaceID surface, int pingCount, TimePoint at, TimePoint before) {
    assert(jobs.runtime.onMain());
    if (at - before > pingPause) {
        state.presence.firstPingAt = at;
        // What has changed meanwhile, some hosts send only to a surface that announces itself.
        if (before != distantPast) parts.surfaces.announce(surface);
    }
    if (surface == SurfaceID::B) return;
    state.published.pingCount = pingCount;
    state.published.changed();
}

} // namespace lumbrine
