// What the displays do not tell of the tracks: full names, colours, input monitoring, the session-wide mute, solo and
// record states, comments. It comes from Pro Tools' scripting service, and from its screen what that does not tell:
// comments always, names while the service does not answer.
#pragma once

#include "base/strip.h"
#include "model/state/jobs.h"
#include "model/state/receiver_state.h"
#include "model/tracks/scripting_link.h"
#include "model/tracks/track_adoption.h"
#include "model/tracks/track_comments.h"
#include "platform/api/accessibility.h"

namespace lumbrine {

class TrackMetadata {
public:
    TrackMetadata(const Jobs& modelJobs, ReceiverState& receiverState, Accessibility& access,
                  ScriptingLink& scriptingLink, TrackAdoption& trackAdoption);

    // Reads the track list and gives the map's tracks what it tells. When the scripting service fails, the names come
    // from Pro Tools' window if the user lets this process read it; what it does not show, colours and states, is then
    // neutral. One at a time: while a refresh is under way, another one is not begun. Any thread; returns at once.
    void refreshFullNames();

    // Reads the comments that the Mix window shows and gives them to the tracks. At most one read waits for its turn
    // while another is under way. What cannot be read stays as it was. Main thread; returns at once.
    void refreshComments();

    // Flips input monitoring of the track on the strip, from what Pro Tools has now, not from what is known here.
    // Nothing happens while the track's full name is not known, or when Pro Tools has none of that name. Main thread.
    void toggleInputMonitor(Strip strip);

private:
    // On the scripting queue
    void refresh(PTSLClient& ptsl);
    void refreshFromScreen();
    void readComments();
    void toggle(PTSLClient& ptsl, const std::string& trackName);

    const Jobs& jobs;
    const ReceiverState& state;
    Accessibility& accessibility;
    ScriptingLink& scripting;
    TrackAdoption& adoption;
    TrackComments comments;
    bool commentsReadWaits = false; // main thread only

    Mutex namesRefreshInFlight;
    bool namesRefreshRunning LUMBRINE_GUARDED_BY(namesRefreshInFlight) = false;
};

} // namespace lumbrine
