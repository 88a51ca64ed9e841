// Sixty times a second: meters fall, and the client sees them. Main thread only.
#pragma once

#include "model/mirror/client_endpoint.h"
#include "model/mirror/meter_bank.h"
#include "model/state/jobs.h"
#include "model/state/receiver_state.h"

#include <memory>

namespace lumbrine {

class MeterStep {
public:
    static constexpr Duration interval = seconds(1.0 / 60);

    MeterStep(const Jobs& modelJobs, const ReceiverState& receiverState, MeterBank& meterBank,
              ClientEndpoint& clientEndpoint);

    // Main thread, once.
    void start();

private:
    void step();

    const Jobs& jobs;
    const ReceiverState& state;
    MeterBank& meters;
    ClientEndpoint& endpoint;
    std::unique_ptr<RepeatingTimer> meterTimer;
};

} // namespace lumbrine
