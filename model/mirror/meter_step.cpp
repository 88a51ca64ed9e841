#include "model/mirror/meter_step.h"

#include "client_link/state_messages.h"

namespace lumbrine {

MeterStep::MeterStep(const Jobs& modelJobs, const ReceiverState& receiverState, MeterBank& meterBank,
                     ClientEndpoint& clientEndpoint)
    : jobs(modelJobs), state(receiverState), meters(meterBank), endpoint(clientEndpoint) {}

void MeterStep::start() {
    meterTimer = jobs.runtime.repeatOnMain(interval, jobs.guarded([this] { step(); }));
}

void MeterStep::step() {
    const MeterBank::Levels levels = meters.fall();
    if (!state.published.iosConnected || !state.quiet()) return;
    endpoint.broadcast(metersMessage(std::span(levels).first(state.shownStrips() * 2)));
}

} // namespace lumbrine
