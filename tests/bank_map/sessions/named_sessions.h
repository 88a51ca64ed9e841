// Sessions, named for what is special about them.
#pragma once

#include "simulator/simulated_pro_tools.h"

#include <functional>
#include <string>
#include <vector>

namespace lumbrine {

// What the receiver has found: the map and the position are the host's; the map is, and the position is said to be
// unknown; the position is said to be unknown, and the map is not the host's; or it is wrong and does not know.
enum class Found { wrong, unsure, map, right };

struct NamedSession {
    std::string name;
    std::function<SimulatedSession()> session;

    // The least on every host, in every view.
    Found listed = Found::right;   // beside a list of tracks
    Found unlisted = Found::right; // by the displays alone

    int view = 0; // where the user is before the scan

    // The user comes by what has changed; what nobody shows to the receiver it cannot know.
    int visited = 0;

    // What happens once the session is mapped; absent: nothing.
    std::function<void(SimulatedProTools&)> meanwhile = {};
    bool listLags = false; // behind that, for a while
};

// Those that become others once they are mapped.
std::vector<NamedSession> changingSessions();

// All of them.
const std::vector<NamedSession>& namedSessions();

} // namespace lumbrine
