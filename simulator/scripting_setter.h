// The commands of the scripting service that switch something on tracks.
#pragma once

#include "simulator/scripting_error.h"
#include "simulator/simulated_session.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

struct SetRequest {
    std::vector<std::string> trackNames;
    bool enabled = false;

    bool operator==(const SetRequest&) const = default;
};

// From the command's body; absent when it is not of that form.
std::optional<SetRequest> parseSetRequest(std::string_view body);

// Whether tracks of its kind have that switch.
bool takes(const SimulatedTrack& track, bool SimulatedTrack::* flag);

// Sets the flag on all of the tracks, told by their exact names. When one of them is not there or does not take it,
// nothing is set and that is what comes back.
std::optional<ScriptingFailure> setOnTracks(SimulatedSession& session, const SetRequest& request,
                                            bool SimulatedTrack::* flag);

} // namespace lumbrine
