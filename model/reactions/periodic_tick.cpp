#include "model/reactions/periodic_tick.h"

namespace lumbrine {

PeriodicTick::PeriodicTick(const Jobs& jobs, const ReceiverState& state, Parts parts)
    : jobs(jobs), state(state), parts(parts) {}

void PeriodicTick::startTimers() {
    timer = jobs.runtime.repeatOnMain(interval, jobs.guarded([this] { tick(); }));
    parts.feedback.onMetersMove = [this] { runMeters(); };
}

void PeriodicTick::tick() {
    parts.presence.watchProTools();
    parts.presence.watchClient();
    runMeters();
    parts.presence.watchWindowWidth();
    parts.mender.watchTrackList();
    parts.position.watchStuckPosition();
    parts.owner.watchOwner();
    parts.owner.describeClients();
    parts.position.watchMissingMap();
    parts.feedback.believeFaders();
    parts.pan.believeRings();
    if (state.published.iosConnected) parts.refresh.refresh();
    parts.owner.forgetTouches();
    parts.surfaces.watchConnections();
    parts.surfaces.reportDropped();
}

void PeriodicTick::runMeters() {
    if (!state.published.iosConnected || parts.meters.atRest()) {
        meterTimer.reset();
    } else if (!meterTimer) {
        meterTimer = jobs.runtime.repeatOnMain(Meters::step, jobs.guarded([this] { meterStep(); }));
    }
}

void PeriodicTick::meterStep() {
    const Meters::Levels levels = parts.meters.fall();
    if (!state.quiet()) return;
    parts.endpoint.broadcast(metersMessage(std::span(levels).first(state.published.shownStrips().size() * 2)));
}

} // namespace lumbrine
