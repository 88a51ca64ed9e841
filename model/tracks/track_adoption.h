// Giving the tracks of the map what a track list tells of them: full names, colours, input monitoring, mute, solo and
// record states. The displays' names are abbreviations, so a list is matched by position and only when it has as many
// tracks as the map. Main thread only.
#pragma once

#include "base/bilingual.h"
#include "model/mirror/client_mirror.h"
#include "model/state/activity_log.h"
#include "model/state/receiver_state.h"
#include "ptsl/ptsl_track.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

class TrackAdoption {
public:
    using TrackList = std::vector<PTSLTrack>;

    TrackAdoption(ReceiverState& receiverState, ClientMirror& clientMirror, ActivityLog& activityLog,
                  Bilingual bilingual);

    // Takes the first list that has as many tracks as the map; when none has, the log says so each time, and everything
    // stays. `source` ("PTSL", "AX") is told in the log. What changes is sent to the client.
    void adopt(const std::vector<TrackList>& candidates, std::string_view source);

    // Called whenever the full names have changed.
    std::function<void()> onNewNames;

private:
    void reportMismatch(const std::vector<TrackList>& candidates) const;
    void adoptNames(const TrackList& tracks, std::string_view source);
    void adoptColors(const TrackList& tracks);
    void adoptInputMonitors(const TrackList& tracks);
    void adoptStates(const TrackList& tracks);

    ReceiverState& state;
    ClientMirror& mirror;
    ActivityLog& log;
    const Bilingual text;
};

} // namespace lumbrine
