// Notices who is there: Pro Tools on either surface, and the client. Called by the periodic tick. Main thread only.
#pragma once

#include "model/bank/bank_map.h"
#include "model/hands/automation_modes.h"
#include "model/hands/pan.h"
#include "model/hands/surface_desk.h"
#include "model/hands/surfaces.h"
#include "model/mirror/client_mirror.h"
#include "model/state/activity_log.h"

namespace lumbrine {

class PresenceWatch {
public:
    static constexpr Duration pingPeriod = seconds(2.0);    // a surface is there while its last ping is younger
    static constexpr Duration clientPeriod = seconds(5.0);  // the same for the client's last datagram
    static constexpr Duration panResetDelay = seconds(0.8); // Pro Tools needs a moment after it has connected

    struct Parts {
        ClientMirror& mirror;
        BankMap& bankMap;
        Pan& pan;
        AutomationModes& automation;
        Surfaces& surfaces;
    };

    PresenceWatch(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts);

    // Puts the V-Pots of both surfaces on the left side of stereo pans at each new connection.
    void watchProTools();

    void watchClient();

    // 16 strips while both surfaces are there, else 8. Nothing is pressed or turned on strips that have gone: nobody
    // knows their tracks.
    void watchWindowWidth();

private:
    bool heardWithin(Duration period, TimePoint last) const { return jobs.runtime.now() - last < period; }
    void resetPanSides();

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
};

} // namespace lumbrine
