// Makes Pro Tools reopen the MIDI ports, by opening and closing its Peripherals dialog on the screen.
#pragma once

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

    Reconnection(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Accessibility& accessibility,
                 Surfaces& surfaces);

    // The user's reconnect action. Returns at once and logs the result:
    //
    // - If Pro Tools is connected: that it is.
    // - If the user has not allowed this process to press other programs' buttons: what to allow. The system asks for
    //   the permission. From the second time on also what to do with an entry of a former build, which the system
    //   shows as switched on.
    // - Else surface A announces itself and the dialog is opened and closed on a background thread. The log then says
    //   how that went, and, if Pro Tools has not pinged within `patience` after it, what to set by hand. The
    //   announcements alone can bring Pro Tools back, so the pings count whatever became of the dialog. Until they have
    //   come or the patience is over, another call does nothing. When the system refuses to let the screen be read
    //   although it says that this is allowed, the log says how to mend that, and the system shows where.
    //
    // Main thread.
    void reconnectToPT();

private:
    void askForPermission();
    void begin();
    void explainRefusal();
    void awaitPings(TimePoint deadline);

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    Accessibility& accessibility;
    Surfaces& surfaces;
    bool reconnecting = false; // main thread only, like the next
    bool asked = false;        // for the permission
};

} // namespace lumbrine
