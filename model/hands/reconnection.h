// Having Pro Tools take hold of the MIDI ports anew, by opening and closing its Peripherals dialog on the screen.
#pragma once

#include "base/bilingual.h"
#include "model/hands/surfaces.h"
#include "model/state/activity_log.h"
#include "model/state/jobs.h"
#include "model/state/receiver_state.h"
#include "platform/api/accessibility.h"

namespace lumbrine {

class Reconnection {
public:
    // How long after the dialog has been closed Pro Tools may take to send its first ping. It pings once a second, and
    // the tick that notices comes every 0.4 s.
    static constexpr Duration patience = seconds(5);

    Reconnection(const Jobs& modelJobs, const ReceiverState& receiverState, Accessibility& access,
                 Surfaces& theSurfaces, ActivityLog& activityLog, Bilingual bilingual);

    // The user's reconnect action. Returns at once; the log tells what comes of it:
    //
    // - Pro Tools is connected: that it is so.
    // - The user does not let this process press other programs' buttons: what to allow, and the system asks for it.
    // - Else surface A announces itself and the dialog is opened and closed on a background thread. The log tells the
    //   outcome when that has ended, and what to set by hand when Pro Tools does not ping within `patience` after it,
    //   whatever the outcome was; the announcements alone can bring Pro Tools back. Until the pings have come or the
    //   patience is over, another call does nothing.
    //
    // Main thread.
    void reconnectToPT();

private:
    void askForPermission();
    void begin();
    void awaitPings(TimePoint deadline);

    const Jobs& jobs;
    const ReceiverState& state;
    Accessibility& accessibility;
    Surfaces& surfaces;
    ActivityLog& log;
    const Bilingual text;
    bool reconnecting = false; // main thread only
};

} // namespace lumbrine
