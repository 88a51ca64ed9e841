// What the displays do not show of the tracks: full names, colours, input monitoring, the session-wide mute, solo and
// record states, comments. They come from Pro Tools' scripting service. What the service does not offer is read from
// Pro Tools' windows: comments always, names while the service does not answer.
#pragma once

#include "model/mirror/client_mirror.h"
#include "model/tracks/screen_reading.h"
#include "model/tracks/scripting_link.h"
#include "model/tracks/service_patience.h"
#include "model/tracks/track_comments.h"
#include "platform/api/accessibility.h"
#include "ptsl/ptsl_track.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

class TrackMetadata {
public:
    using TrackList = std::vector<PTSLTrack>;

    TrackMetadata(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Accessibility& accessibility,
                  ScriptingLink& scripting, ClientMirror& mirror);

    // Reads the track list and adopts what it says. Once the scripting service has been failing for 10 s, or while it
    // has said nothing of this session, the names come from Pro Tools' window if the user lets this process read it;
    // what the window does not show, colours and states, is then neutral. While a refresh is under way, another one is
    // not begun. Any thread; returns at once.
    void refreshFullNames();

    // The same every 1.2 s, but more and more seldom while the service is busy or silent. Main thread.
    void refreshRegularly();

    // Pro Tools shows that it is alive: a service that failed may be back. Main thread.
    void somethingHappened();

    // Gives the session's tracks what a list says of them. The displays' names are abbreviations, so a list is matched
    // by position, and only one that has as many tracks as the session. The first such list counts, a later one only
    // where all displays may be of its names; if there is none, that is logged and everything stays. `source` ("PTSL",
    // "AX") is for the log. What changes is sent to the client. Main thread.
    void adopt(const std::vector<TrackList>& candidates, std::string_view source);

    // Reads the comments that the Mix window shows, when the screen may be read again. What cannot be read stays as it
    // was. Main thread; returns at once.
    void refreshComments();

    // Another session is open: tracks of the same names have other comments. Main thread.
    void forgetComments() { comments.forget(); }

    // Takes a list that the scripting service has sent: remembers it and adopts it. Main thread.
    void takeList(TrackList tracks);

    // That track in the newest list of the scripting service; null when it is not there. Valid until the next one.
    // Main thread.
    const PTSLTrack* listed(const TrackIdentity& track) const;

    // The tracks that the banks should show, by the newest list; empty while there is none. Main thread.
    const std::vector<TrackIdentity>& banked() const { return bankedTracks; }

    // Whether that list is the scripting service's, which tells the hidden tracks apart; the screen may list them too.
    bool bankedAreVisible() const { return bankedIsFromService; }

    // What the track is called in that list; absent when it is not there. While the service has sent no list, the name
    // that the track had. Main thread.
    std::optional<std::string> currentName(const TrackIdentity& track) const;

private:
    // On the scripting queue
    void refresh(PTSLClient& ptsl);

    // On the main thread
    bool noteFailure(const PTSLFailure& failure, TimePoint asked);
    void refreshFromScreen();
    bool hasOtherOrder(const TrackList& list) const;
    std::size_t misfitsOf(const TrackList& list) const;
    void reportMismatch(const std::vector<TrackList>& candidates) const;
    void adoptNames(const TrackList& list, std::string_view source);
    void forgetDisplays(const TrackList& list);
    void adoptIdentities(const TrackList& list);
    void adoptColors(const TrackList& list, bool first);
    void adoptInputMonitors(const TrackList& list, bool first);
    void adoptStates(const TrackList& list);

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    Accessibility& accessibility;
    ScriptingLink& scripting;
    ClientMirror& mirror;
    ScreenReading screen;
    TrackComments comments;
    TrackList newest;                        // of the scripting service; main thread only
    std::vector<TrackIdentity> bankedTracks; // main thread only, like the next
    bool showsHidden = false;                // the banks had as many tracks as the list with the hidden ones
    bool bankedIsFromService = false;        // main thread only, like the next two
    bool isFromService = false;              // what was adopted last
    ServicePatience patience;

    Mutex namesRefreshInFlight;
    bool namesRefreshRunning LUMBRINE_GUARDED_BY(namesRefreshInFlight) = false;
};

} // namespace lumbrine
