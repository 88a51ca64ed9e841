// Muting and soloing many tracks at once, by name through the scripting service: the surfaces stay where they are.
#pragma once

#include "model/state/activity_log.h"
#include "model/state/jobs.h"
#include "model/state/receiver_state.h"
#include "model/tracks/scripting_link.h"
#include "model/tracks/track_metadata.h"

#include <string>
#include <vector>

namespace lumbrine {

class GroupMuteSolo {
public:
    GroupMuteSolo(const Jobs& jobs, const ReceiverState& state, ActivityLog& log, ScriptingLink& scripting,
                  TrackMetadata& metadata);

    // Members are session indices. Those whose full name is not known are left out, since a display's name may stand
    // for another track; nothing happens when none is left. Any thread; returns at once.
    void groupSetMuteSolo(std::vector<int> members, bool isSolo, bool enabled);

private:
    std::vector<std::string> fullNames(const std::vector<int>& members) const; // main thread
    void set(PTSLClient& ptsl, const std::vector<std::string>& names, bool isSolo, bool enabled);
    void report(std::size_t count, bool isSolo, bool enabled);

    const Jobs& jobs;
    const ReceiverState& state;
    ActivityLog& log;
    ScriptingLink& scripting;
    TrackMetadata& metadata;
};

} // namespace lumbrine
