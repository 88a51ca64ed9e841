#include "model/reactions/presence_watch.h"

#include <cassert>

namespace lumbrine {

PresenceWatch::PresenceWatch(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts)
    : jobs(jobs), state(state), log(log), parts(parts) {}

void PresenceWatch::watchProTools() {
    assert(jobs.runtime.onMain());
    const bool connected = heardWithin(pingPeriod, state.presence.lastPing);
    if (connected == state.published.huiConnected) return;
    state.published.huiConnected = connected;
    if (connected) state.published.health.surfaceAWasHeard = true;
    state.published.changed();
    if (!connected) parts.automation.surfaceGone(SurfaceID::A);
    if (connected) jobs.inBackgroundAfter(panResetDelay, [this] { resetPanSides(); });
}

// Every connection begins with a known side.
void PresenceWatch::resetPanSides() {
    parts.pan.resetSide(SurfaceID::A);
    if (jobs.runtime.syncMain([this] { return heardWithin(pingPeriod, state.presence.lastPingB); }))
        parts.pan.resetSide(SurfaceID::B);
}

void PresenceWatch::watchClient() {
    const bool connected = heardWithin(clientPeriod, state.presence.lastUDP);
    if (connected == state.published.iosConnected) return;
    state.published.iosConnected = connected;
    state.published.changed();
}

void PresenceWatch::watchWindowWidth() {
    const bool both = state.published.huiConnected && heardWithin(pingPeriod, state.presence.lastPingB);
    const int width = both ? stripCount : stripsPerSurface;
    if (width == state.published.winW) return;
    state.published.winW = width;
    if (both) state.published.health.surfaceBWasHeard = true;
    if (!both) parts.automation.surfaceGone(SurfaceID::B);
    state.published.changed();
    if (both) {
        parts.surfaces.showStrips(SurfaceID::B);
        log.say("✓ Second surface connected → 16-ch window", "✓ 2台目サーフェス接続 → 16ch 窓に拡大");
        jobs.inBackground(Priority::normal, [this] { parts.pan.followSide(SurfaceID::B); });
    } else {
        parts.surfaces.hideStrips(SurfaceID::B);
        log.say("Second surface lost → back to 8-ch window", "2台目サーフェス切断 → 8ch 窓に戻ります");
    }
    parts.bankMap.relocalize();
    parts.mirror.sendBankPosToClient();
}

} // namespace lumbrine
