#include "model/reactions/client_refresh.h"

namespace lumbrine {

namespace {

constexpr int ticksPerResend = 3;       // 1.2 s
constexpr int ticksPerCommentRead = 30; // 12 s

} // namespace

ClientRefresh::ClientRefresh(ReceiverState& receiverState, Parts otherParts)
    : state(receiverState), parts(otherParts) {}

void ClientRefresh::refresh() {
    parts.mirror.sendSwitchesIfChanged();
    ++resyncTick;
    const bool scannable = state.published.huiConnected && !state.published.calibrating;
    const bool hasMap = !state.published.trackMap.empty();
    if (resyncTick % ticksPerResend == 0) resendState();
    if (resyncTick % ticksPerResend == 1) pollNextAutoMode();
    if (resyncTick % ticksPerResend == 0 && hasMap) resendTableIfDirty();
    if (resyncTick % ticksPerResend == 0 && hasMap && scannable) parts.metadata.refreshFullNames();
    if (resyncTick % ticksPerCommentRead == 2 && hasMap && scannable && !state.transportRunning())
        parts.metadata.refreshComments();
}

void ClientRefresh::resendState() {
    ClientMirror& mirror = parts.mirror;
    mirror.sendAllSwitches();
    mirror.sendShownTrackNames();
    mirror.sendShownFaders();
    mirror.sendAllPans();
    mirror.sendPanMode();
    mirror.sendSelectsToClient();
    mirror.sendVisibleFullNames();
    mirror.sendVisibleColors();
    mirror.sendVisibleInputMons();
    mirror.sendAllAutoModes();
}

void ClientRefresh::pollNextAutoMode() {
    if (!state.published.huiConnected || !state.quiet() || state.transportRunning()) return;
    parts.automation.pollAutoMode(*Strip::of(autoPollRR % state.published.winW));
    ++autoPollRR;
}

void ClientRefresh::resendTableIfDirty() {
    if (!state.session.fullTableDirty) return;
    state.session.fullTableDirty = false;
    parts.table.broadcastAllRows();
}

} // namespace lumbrine
