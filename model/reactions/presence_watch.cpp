#include "model/reactions/presence_watch.h"

#include <cassert>

namespace lumbrine {

PresenceWatch::PresenceWatch(const Jobs& modelJobs, ReceiverState& receiverState, Parts otherParts, Bilingual bilingual)
    : jobs(modelJobs), state(receiverState), parts(otherParts), text(bilingual) {}

void PresenceWatch::watchProTools() {
    assert(jobs.runtime.onMain());
    const bool connected = heardWithin(pingPeriod, state.presence.lastPing);
    if (connected == state.published.huiConnected) return;
    state.published.huiConnected = connected;
    state.published.changed();
    if (connected) jobs.inBackgroundAfter(panResetDelay, [this] { resetPanSides(); });
}

void PresenceWatch::resetPanSides() {
    parts.surfaces.engine(SurfaceID::A).resetPanAssignToLeft();
    if (jobs.runtime.syncMain([this] { return heardWithin(pingPeriod, state.presence.lastPingB); }))
        parts.surfaces.engine(SurfaceID::B).resetPanAssignToLeft();
    jobs.runOnMain([this] { parts.panMode.setPanMode(false); });
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
    state.published.changed();
    if (both) {
        parts.log.appendLog(text("✓ Second surface connected → 16-ch window", "✓ 2台目サーフェス接続 → 16ch 窓に拡大"));
        jobs.inBackground(Priority::normal, [this] { followPanSide(); });
    } else {
        parts.log.appendLog(
            text("Second surface lost → back to 8-ch window", "2台目サーフェス切断 → 8ch 窓に戻ります"));
    }
    parts.bankMap.relocalize();
    parts.mirror.sendBankPosToClient();
}

void PresenceWatch::followPanSide() {
    HUIEngine& engine = parts.surfaces.engine(SurfaceID::B);
    engine.resetPanAssignToLeft();
    if (!jobs.runtime.syncMain([this] { return state.automation.panRightMode; })) return;
    engine.flipPanSide();
    engine.pressSwitch(hui::assignZone, hui::panAssignPort);
}

} // namespace lumbrine
