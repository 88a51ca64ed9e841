// Fader groups: the first fader touched of a group leads it, and the members that nobody touches follow.
#pragma once

#include "simulator/simulated_session.h"

#include <map>
#include <vector>

namespace lumbrine {

class FaderGroups {
public:
    // Without `linked` every track is by itself. The session outlives this.
    FaderGroups(SimulatedSession& editedSession, bool linkedTracks) : session(editedSession), linked(linkedTracks) {}

    void touch(int trackID);
    void release(int trackID); // the lead passes to the fader of the group that is touched the longest
    bool isTouched(int trackID) const;

    // Moves the track's fader; when it leads, the others by as much from where they were when its lead began, each
    // within the fader's range.
    void move(int trackID, FaderValue position);

private:
    struct Lead {
        int leader;
        std::map<int, FaderValue> start; // of every member when the lead began
    };

    int groupOf(int trackID) const;
    void beginLead(int group, int leader);

    SimulatedSession& session;
    const bool linked;
    std::vector<int> touched;  // track ids, longest touched first
    std::map<int, Lead> leads; // by group
};

} // namespace lumbrine
