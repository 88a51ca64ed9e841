#include "model/mirror/client_mirror.h"

#include "client_link/state_messages.h"

#include <cassert>
#include <utility>

namespace lumbrine {

ClientMirror::ClientMirror(Runtime& runtime, const ReceiverState& state, ClientEndpoint& endpoint)
    : runtime(runtime), state(state), endpoint(endpoint) {}

void ClientMirror::emit(ByteView bytes) {
    assert(runtime.onMain());
    if (snapshotTarget) return endpoint.send(bytes, *snapshotTarget);
    // Another client may have been told other names before, or none.
    const auto owner = endpoint.ownership();
    if (std::exchange(namesToldTo, owner) != owner) sendShownTrackNames();
    endpoint.broadcast(bytes);
}

void ClientMirror::send(Messages messages) {
    for (const Message message : messages)
        (this->*message)();
}

void ClientMirror::sendTo(const std::string& key, Messages messages) {
    snapshotTarget = key;
    send(messages);
    snapshotTarget.reset();
}

template <typename Value, typename ValueOf>
std::vector<Value> ClientMirror::shown(ValueOf valueOf) const {
    std::vector<Value> values;
    for (const StripState& strip : state.published.shownStrips())
        values.push_back(valueOf(strip));
    return values;
}

// ---- Names, faders

void ClientMirror::sendTrackNameToClient(Strip strip, std::string_view name) {
    named.set(strip.slot());
    const auto owner = endpoint.ownership();
    const bool toOwner = !snapshotTarget || snapshotTarget == endpoint.liveOwnerKey();
    emit(trackNameMessage(strip.index(), name));
    if (owner && toOwner && onNameTold) onNameTold(strip, name, *owner);
}

void ClientMirror::sendShownTrackNames() {
    for (int i = 0; i < state.published.winW; ++i) {
        const Strip strip = *Strip::of(i);
        const std::string& name = state.published.strip(strip).name;
        if (!name.empty() || named.test(strip.slot())) sendTrackNameToClient(strip, name);
    }
}

void ClientMirror::sendFaderToClient(Strip strip, double value) {
    if (state.quiet() && state.published.strip(strip).faderIsKnown()) emit(faderMessage(strip.index(), value));
}

void ClientMirror::sendShownFaders() {
    for (int i = 0; i < state.published.winW; ++i) {
        const Strip strip = *Strip::of(i);
        sendFaderToClient(strip, state.published.strip(strip).fader);
    }
}

// ---- Switches

Bytes ClientMirror::buildSwitchPayload() const {
    const TimePoint now = runtime.now();
    const auto light = [now](const FlashingLed& led) {
        if (now < led.blinkUntil) return SwitchLight::blinking;
        return led.rawOn ? SwitchLight::on : SwitchLight::off;
    };
    return switchesMessage(shown<StripSwitches>([&light](const StripState& strip) {
        return StripSwitches{.mute = light(strip.mute),
                             .solo = strip.solo ? SwitchLight::on : SwitchLight::off,
                             .record = light(strip.record)};
    }));
}

void ClientMirror::sendSwitchesIfChanged() {
    if (!state.quiet()) return;
    Bytes payload = buildSwitchPayload();
    if (payload == lastSentSwitches) return;
    emit(payload);
    lastSentSwitches = std::move(payload);
}

void ClientMirror::sendAllSwitches() {
    emit(buildSwitchPayload());
}

void ClientMirror::sendSelectsToClient() {
    if (!state.quiet()) return;
    PerStrip<bool> selects{};
    for (std::size_t i = 0; i < selects.size(); ++i)
        selects[i] = state.published.strips[i].select;
    emit(selectsMessage(std::span(selects).first(state.published.shownStrips().size())));
}

// ---- Pan

void ClientMirror::sendPan(Strip strip, int side) {
    if (!state.quiet()) return;
    const Ring& ring = state.published.strip(strip).pan[static_cast<std::size_t>(side)];
    emit(panMessage(strip.index(), side, ring.position, ring.centre));
}

void ClientMirror::sendAllPans() {
    for (int i = 0; i < state.published.winW; ++i)
        for (const int side : {0, 1})
            sendPan(*Strip::of(i), side);
}

void ClientMirror::sendPanMode() {
    emit(panModeMessage(state.published.panRight));
}

// ---- What is shown of the session

const Track* ClientMirror::shownTrack(std::size_t slot) const {
    const auto track = state.published.trackOn(slot);
    return track ? &state.published.session.tracks[*track] : nullptr;
}

void ClientMirror::sendBankPosToClient() {
    emit(bankPosMessage(state.published.bankOffset, state.published.session.size(), state.published.winW));
}

void ClientMirror::sendVisibleFullNames() {
    for (std::size_t i = 0; i < state.published.shownStrips().size(); ++i) {
        const Track* track = shownTrack(i);
        emit(fullNameMessage(static_cast<int>(i), track && track->name ? *track->name : std::string_view{}));
    }
}

void ClientMirror::sendVisibleColors() {
    std::vector<std::optional<RGBColor>> colors;
    for (std::size_t i = 0; i < state.published.shownStrips().size(); ++i) {
        const Track* track = shownTrack(i);
        colors.push_back(track ? track->color : std::nullopt);
    }
    emit(colorsMessage(colors));
}

void ClientMirror::sendVisibleInputMons() {
    const std::size_t shownStrips = state.published.shownStrips().size();
    PerStrip<bool> inputMons{};
    const auto before = std::exchange(toldMonitors, {});
    toldTo = endpoint.ownership();
    for (std::size_t i = 0; i < shownStrips; ++i) {
        toldMonitors[i] = monitorOn(i);
        if (!toldMonitors[i]) continue;
        const bool isSameTrack = before[i] && isSame(before[i]->track, toldMonitors[i]->track);
        toldMonitors[i]->since = isSameTrack ? before[i]->since : runtime.now();
        inputMons[i] = toldMonitors[i]->on;
    }
    emit(inputMonsMessage(std::span(inputMons).first(shownStrips)));
}

// During a seek they belong to the position that is told with them, and the displays may have other names by now.
void ClientMirror::resendView() {
    if (!state.quiet()) return;
    sendVisibleFullNames();
    sendVisibleColors();
    sendVisibleInputMons();
}

std::optional<ToldMonitor> ClientMirror::toldMonitor(Strip strip, Ownership owner) const {
    if (toldTo == owner) return toldMonitors[strip.slot()];
    const bool isShown = strip.slot() < state.published.shownStrips().size();
    return owner.isNewcomers && isShown ? monitorOn(strip.slot()) : std::nullopt;
}

std::optional<ToldMonitor> ClientMirror::monitorOn(std::size_t slot) const {
    const Track* track = shownTrack(slot);
    if (!track) return std::nullopt;
    return ToldMonitor{.track = track->identity(), .on = track->inputMonitor};
}

// ---- Automation modes, transport

Bytes ClientMirror::buildAutoModes() const {
    return autoModesMessage(shown<std::uint8_t>([](const StripState& strip) { return strip.mode; }));
}

void ClientMirror::sendAllAutoModes() {
    if (!state.quiet()) return;
    lastSentAutoModes = buildAutoModes();
    emit(lastSentAutoModes);
}

void ClientMirror::sendAutoModesIfChanged() {
    if (!state.quiet() || buildAutoModes() == lastSentAutoModes) return;
    sendAllAutoModes();
}

void ClientMirror::sendTransport() {
    emit(transportMessage(state.transportPlaying, state.transportRecording));
}

void ClientMirror::sendTransportIfChanged() {
    if (state.transportPlaying == lastSentPlaying && state.transportRecording == lastSentRecording) return;
    lastSentPlaying = state.transportPlaying;
    lastSentRecording = state.transportRecording;
    sendTransport();
}

// ---- The whole session

void ClientMirror::sendSessAutoModes() {
    if (!state.published.session.surveyed) return;
    std::vector<std::uint8_t> modes;
    modes.reserve(state.published.session.size());
    for (const Track& track : state.published.session.tracks)
        modes.push_back(track.mode);
    for (const Bytes& chunk : sessAutoChunkMessages(modes))
        emit(chunk);
}

void ClientMirror::sendSessPan() {
    if (!state.published.session.surveyed) return;
    std::vector<SessionPan> pans;
    pans.reserve(state.published.session.size());
    for (const Track& track : state.published.session.tracks)
        pans.push_back(track.pan.value_or(SessionPan{}));
    for (const Bytes& chunk : sessPanChunkMessages(pans))
        emit(chunk);
}

} // namespace lumbrine
