// The heartbeat that keeps the receiver alive without any event: one tick every 0.4 s, its steps in a fixed order.
#pragma once

#include "model/reactions/client_refresh.h"
#include "model/reactions/owner_watch.h"
#include "model/reactions/position_watch.h"
#include "model/reactions/presence_watch.h"
#include "model/state/jobs.h"

#include <memory>

namespace lumbrine {

class PeriodicTick {
public:
    static constexpr Duration interval = seconds(0.4);

    struct Parts {
        PresenceWatch& presence;
        PositionWatch& position;
        OwnerWatch& owner;
        ClientRefresh& refresh;
    };

    PeriodicTick(const Jobs& modelJobs, const ReceiverState& receiverState, Parts otherParts);

    // Main thread, once.
    void start();

private:
    void tick();

    const Jobs& jobs;
    const ReceiverState& state;
    const Parts parts;
    std::unique_ptr<RepeatingTimer> timer;
};

} // namespace lumbrine
