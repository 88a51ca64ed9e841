#include "model/reactions/periodic_tick.h"

namespace lumbrine {

PeriodicTick::PeriodicTick(const Jobs& modelJobs, const ReceiverState& receiverState, Parts otherParts)
    : jobs(modelJobs), state(receiverState), parts(otherParts) {}

void PeriodicTick::start() {
    timer = jobs.runtime.repeatOnMain(interval, jobs.guarded([this] { tick(); }));
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
}

} // namespace lumbrine
