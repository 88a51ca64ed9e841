#include "model/reactions/periodic_tick.h"

namespace lumbrine {

PeriodicTick::PeriodicTick(const Jobs& jobs, const ReceiverState& state, Parts parts)
    : jobs(jobs), state(state), parts(parts) {}

void PeriodicTick::startTimers() {
    timer = jobs.runtime.repeatOnMain(interval, jobs.guarded([this] { tick(); }));
    meterTimer = jobs.runtime.repeatOnMain(meterInterval, jobs.guarded([this] { meterStep(); }));
}

void PeriodicTick::tick() {
    parts.presence.watchProTools();
    parts.presence.watchClient();
    parts.presence.watchWindowWidth();
    parts.position.watchStuckPosition();
    parts.owner.watchOwner();
    parts.owner.describeClients();
    parts.position.watchMissingMap();
    if (state.published.iosConnected) parts.refresh.refresh();
    parts.owner.forgetTouches();
    parts.surfaces.reportDropped();
}

// Levels fall also while nobody is sent them.
void PeriodicTick::meterStep() {
    const Meters::Levels levels = parts.meters.fall();
    if (!state.published.iosConnected || !state.quiet()) return;
    parts.endpoint.broadcast(metersMessage(std::span(levels).first(state.published.shownStrips().size() * 2)));
}

} // namespace lumbrine
