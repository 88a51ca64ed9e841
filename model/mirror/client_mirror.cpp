#include "model/mirror/client_mirror.h"

#include "client_link/state_messages.h"

#include <cassert>
#include <utility>

namespace lumbrine {

ClientMirror::ClientMirror(Runtime& rt, const ReceiverState& receiverState, ClientEndpoint& clientEndpoint)
    : runtime(rt), state(receiverState), endpoint(clientEndpoint) {}

void ClientMirror::emit(ByteView bytes) {
    assert(runtime.onMain());
    if (snapshotTarget) {
        endpoint.send(bytes, *snapshotTarget);
    } else {
        endpoint.broadcast(bytes);
    }
}

// ---- Names, faders

void ClientMirror::sendTrackNameToClient(Strip strip, std::string_view name) {
    emit(trackNameMessage(strip.index(), name));
}

void ClientMirror::sendShownTrackNames() {
    for (int i = 0; i < state.published.winW; ++i) {
        const Strip strip = *Strip::of(i);
        const std::string& name = state.mirror.nameCache[strip.slot()];
        if (!name.empty()) sendTrackNameToClient(strip, name);
    }
}

void ClientMirror::sendFaderToClient(Strip strip, double value) {
    if (state.quiet()) emit(faderMessage(strip.index(), value));
}

void ClientMirror::sendShownFaders() {
    for (int i = 0; i < state.published.winW; ++i) {
        const Strip strip = *Strip::of(i);
        sendFaderToClient(strip, state.published.faders[strip.slot()]);
    }
}

// ---- Switches

Bytes ClientMirror::buildSwitchPayload() const {
    const TimePoint now = runtime.now();
    const auto light = [now](const FlashingLed& led) {
        if (now < led.blinkUntil) return SwitchLight::blinking;
        return led.rawOn ? SwitchLight::on : SwitchLight::off;
    };
    PerStrip<StripSwitches> strips;
    for (std::size_t i = 0; i < state.shownStrips(); ++i)
        strips[i] = {.mute = light(state.mirror.mute[i]),
                     .solo = state.mirror.soloCache[i] ? SwitchLight::on : SwitchLight::off,
                     .record = light(state.mirror.rec[i])};
    return switchesMessage(std::span(strips).first(state.shownStrips()));
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
    if (state.quiet()) emit(selectsMessage(std::span(state.mirror.selectCache).first(state.shownStrips())));
}

// ---- Pan

void ClientMirror::sendPan(Strip strip, int side) {
    if (!state.quiet()) return;
    const auto which = static_cast<std::size_t>(side);
    emit(panMessage(strip.index(), side, state.mirror.panPos[which][strip.slot()],
                    state.mirror.panCen[which][strip.slot()]));
}

void ClientMirror::sendAllPans() {
    for (int i = 0; i < state.published.winW; ++i)
        for (const int side : {0, 1})
            sendPan(*Strip::of(i), side);
}

void ClientMirror::sendPanMode() {
    emit(panModeMessage(state.automation.panRightMode));
}

// ---- What the shown part of the session is

std::optional<std::size_t> ClientMirror::shownTrack(std::size_t strip) const {
    if (state.published.bankOffset < 0) return std::nullopt;
    return static_cast<std::size_t>(state.published.bankOffset) + strip;
}

void ClientMirror::sendBankPosToClient() {
    emit(bankPosMessage(state.published.bankOffset, state.published.trackMap.size(), state.published.winW));
}

void ClientMirror::sendVisibleFullNames() {
    const auto& names = state.published.trackMapFull;
    for (std::size_t i = 0; i < state.shownStrips(); ++i) {
        const auto track = shownTrack(i);
        emit(fullNameMessage(static_cast<int>(i), track && *track < names.size() ? names[*track] : std::string_view{}));
    }
}

void ClientMirror::sendVisibleColors() {
    const auto& colors = state.published.trackMapColors;
    PerStrip<std::optional<RGBColor>> shown;
    for (std::size_t i = 0; i < state.shownStrips(); ++i)
        if (const auto track = shownTrack(i); track && *track < colors.size()) shown[i] = colors[*track];
    emit(colorsMessage(std::span(shown).first(state.shownStrips())));
}

void ClientMirror::sendVisibleInputMons() {
    const auto& inputMons = state.published.trackMapInputMon;
    PerStrip<bool> shown{};
    for (std::size_t i = 0; i < state.shownStrips(); ++i)
        if (const auto track = shownTrack(i); track && *track < inputMons.size()) shown[i] = inputMons[*track];
    emit(inputMonsMessage(std::span(shown).first(state.shownStrips())));
}

void ClientMirror::sendBankView() {
    sendBankPosToClient();
    sendVisibleFullNames();
    sendVisibleColors();
    sendVisibleInputMons();
}

// ---- Automation modes, transport

Bytes ClientMirror::buildAutoModes() const {
    return autoModesMessage(std::span(state.automation.autoModeCache).first(state.shownStrips()));
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
    emit(transportMessage(state.mirror.transportPlaying, state.mirror.transportRecording));
}

void ClientMirror::sendTransportIfChanged() {
    if (state.mirror.transportPlaying == lastSentPlaying && state.mirror.transportRecording == lastSentRecording)
        return;
    lastSentPlaying = state.mirror.transportPlaying;
    lastSentRecording = state.mirror.transportRecording;
    sendTransport();
}

// ---- The whole session

void ClientMirror::sendSessAutoModes() {
    for (const Bytes& chunk : sessAutoChunkMessages(state.session.sessAutoModes))
        emit(chunk);
}

void ClientMirror::sendSessPan() {
    const SessionTable& session = state.session;
    std::vector<SessionPan> pans(session.sessPanKnown.size());
    for (std::size_t t = 0; t < pans.size(); ++t)
        pans[t] = {.known = session.sessPanKnown[t],
                   .side = session.sessPanSide[t],
                   .position = session.sessPanPos[t],
                   .centre = session.sessPanCenter[t]};
    for (const Bytes& chunk : sessPanChunkMessages(pans))
        emit(chunk);
}

} // namespace lumbrine
