// Everything the receiver knows about Pro Tools and the client. Main thread only, except the atomic fields; what other
// threads must see lives in small classes with a lock of their own (Meters, DisplayWatch) or an atomic (SurfaceDesk).
#pragma once

#include "model/state/published_state.h"
#include "platform/api/time.h"

#include <atomic>

namespace lumbrine {

// When somebody was last heard. The times of arrival are written where pings and datagrams arrive: nobody may count as
// gone because the main thread is late.
struct Presence {
    TimePoint firstPingAt = distantPast;          // start of the current run of pings, on either surface
    std::atomic<TimePoint> lastPing{distantPast}; // surface A
    std::atomic<TimePoint> lastPingB{distantPast};
    std::atomic<TimePoint> lastUDP{distantPast};
};

// What decides when the next scan comes, and what the log has said about it.
struct ScanState {
    int locateStuckTicks = 0;
    TimePoint lastAutoCalibrationAt = distantPast;
    bool calibrationRetried = false;
    bool warnedTransportSkip = false;
};

// How it goes with Pro Tools' scripting service.
struct ScriptingState {
    bool ptslOK = false;     // the last track list came
    bool ptslWarned = false; // the log has told of a failure
};

struct ReceiverState {
    PublishedState published;
    Presence presence;
    ScanState scans;
    ScriptingState scripting;

    bool transportPlaying = false;
    bool transportRecording = false;
    TimePoint lastAutoPollAll = distantPast;
    bool fullTableDirty = false; // the client has not yet been told of the latest changes of the session

    // Nobody is moving the banks, so what the surfaces show is what the user chose.
    bool quiet() const { return !published.banksUsedBy; }
    bool transportRunning() const { return transportPlaying || transportRecording; }
};

} // namespace lumbrine
