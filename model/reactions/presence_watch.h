// Who is there: Pro Tools on either surface, and the client. Looked at by the periodic tick. Main thread only.
#pragma once

#include "base/bilingual.h"
#include "model/bank/bank_map.h"
#include "model/hands/pan_mode.h"
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
        Surfaces& surfaces;
        ClientMirror& mirror;
        BankMap& bankMap;
        PanMode& panMode;
        ActivityLog& log;
    };

    PresenceWatch(const Jobs& modelJobs, ReceiverState& receiverState, Parts otherParts, Bilingual bilingual);

    // Every new connection starts with the V-Pots of both surfaces on the left side of stereo pans.
    void watchProTools();

    void watchClient();

    // 16 strips while both surfaces are there, else 8.
    void watchWindowWidth();

private:
    bool heardWithin(Duration period, TimePoint last) const { return jobs.runtime.now() - last < period; }
    void resetPanSides();
    void followPanSide();

    const Jobs& jobs;
    ReceiverState& state;
    const Parts parts;
    const Bilingual text;
};

} // namespace lumbrine
