// Fader groups: the first touched fader of a group leads it, and the untouched members follow.
#pragma once

#include "simulator/simulated_session.h"

#include <map>
#include <vector>

namespace lumbrine {

class FaderGroups {
public:
    // When `linked` is false, there are no groups. The session must outlive this object.
    FaderGroups(SimulatedSession& session, bool linked) : session(session), linked(linked) {}

    void touch(int trackID);
    void release(int trackID); // the lead passes to the fader of the group that has been touched longest
    bool isTouched(int trackID) const;

    // Moves the track's fader. When it leads, the others move by the same amount from their positions at the start of
    // its lead, each clamped to the fader's range.
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
