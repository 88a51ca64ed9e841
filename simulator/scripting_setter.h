// The commands of the scripting service that set a switch on tracks.
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

// Parses the body of such a command. Absent when the form is wrong.
std::optional<SetRequest> parseSetRequest(std::string_view body);

// True when tracks of this type have this switch.
bool takes(const SimulatedTrack& track, bool SimulatedTrack::* flag);

// Sets the flag on all named tracks; names must match exactly. When a track does not exist or does not have the switch,
// nothing is set and the failure is returned.
std::optional<ScriptingFailure> setOnTracks(SimulatedSession& session, const SetRequest& request,
                                            bool SimulatedTrack::* flag);

} // namespace lumbrine
