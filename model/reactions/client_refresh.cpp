#include "model/reactions/client_refresh.h"

namespace lumbrine {

namespace {

constexpr int ticksPerResend = 3;       // 1.2 s
constexpr int ticksPerCommentRead = 30; // 12 s

} // namespace

ClientRefresh::ClientRefresh(ReceiverState& state, Parts parts) : state(state), parts(parts) {}

// The three kinds of upkeep take turns, so that no tick does all of them.
void ClientRefresh::refresh() {
    parts.mirror.sendSwitchesIfChanged();
    ++resyncTick;
    const bool connected = state.published.huiConnected;
    const bool scanning = state.published.calibrating();
    const bool hasMap = !state.published.session.empty();
    if (resyncTick % ticksPerResend == 0) {
        parts.mirror.send(occasion::resend);
        if (hasMap) resendTableIfDirty();
        if (hasMap && connected && !scanning) parts.metadata.refreshRegularly();
    }
    if (resyncTick % ticksPerResend == 1) pollNextAutoMode();
    if (resyncTick % ticksPerCommentRead == 2 && hasMap && connected && !scanning && !state.transportRunning())
        parts.metadata.refreshComments();
}

void ClientRefresh::pollNextAutoMode() {
    if (!state.published.huiConnected || !state.quiet() || state.transportRunning()) return;
    parts.automation.pollAutoMode(*Strip::of(autoPollRR % state.published.winW));
    ++autoPollRR;
}

void ClientRefresh::resendTableIfDirty() {
    if (!state.fullTableDirty) return;
    state.fullTableDirty = false;
    parts.table.sendChangedRows();
}

} // namespace lumbrine
