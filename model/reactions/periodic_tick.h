// The two timers that keep the receiver going without any event: a tick every 0.4 s, its steps in a fixed order, and a
// step of the meters sixty times a second, as long as a client has something to see on them.
#pragma once

#include "model/bank/map_mender.h"
#include "model/hands/pan.h"
#include "model/hands/surfaces.h"
#include "model/mirror/meters.h"
#include "model/reactions/client_refresh.h"
#include "model/reactions/owner_watch.h"
#include "model/reactions/position_watch.h"
#include "model/reactions/presence_watch.h"
#include "model/reactions/surface_feedback.h"
#include "model/state/jobs.h"

#include <memory>

namespace lumbrine {

class PeriodicTick {
public:
    static constexpr Duration interval = seconds(0.4);

    struct Parts {
        ClientEndpoint& endpoint;
        Meters& meters;
        SurfaceFeedback& feedback;
        Pan& pan;
        PresenceWatch& presence;
        MapMender& mender;
        PositionWatch& position;
        OwnerWatch& owner;
        ClientRefresh& refresh;
        Surfaces& surfaces;
    };

    PeriodicTick(const Jobs& jobs, const ReceiverState& state, Parts parts);

    // Main thread, once.
    void startTimers();

private:
    void tick();
    void runMeters();
    void meterStep();

    const Jobs& jobs;
    const ReceiverState& state;
    const Parts parts;
    std::unique_ptr<RepeatingTimer> timer;
    std::unique_ptr<RepeatingTimer> meterTimer; // null while there is nothing to see
};

} // namespace lumbrine
