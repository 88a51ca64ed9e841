// The commands of the scripting service that switch something on tracks.
#pragma once

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

// Sets the flag on all of the tracks, told by their exact names. When the session lacks one of them, nothing is set and
// the first missing name comes back.
std::optional<std::string> setOnTracks(SimulatedSession& session, const SetRequest& request,
                                       bool SimulatedTrack::* flag);

} // namespace lumbrine
