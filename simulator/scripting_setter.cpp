#include "simulator/scripting_setter.h"

#include "simulator/scripting_json.h"

#include <algorithm>
#include <initializer_list>

namespace lumbrine {

std::optional<SetRequest> parseSetRequest(std::string_view text) {
    const std::optional<ScriptingJSON> body = objectOf(text);
    if (!body) return std::nullopt;
    const ScriptingJSON* const names = valueOf(*body, "track_names");
    const ScriptingJSON* const enabled = valueOf(*body, "enabled");
    if (names == nullptr || !names->is_array() || enabled == nullptr || !enabled->is_boolean()) return std::nullopt;
    SetRequest request;
    request.enabled = enabled->get<bool>();
    for (const ScriptingJSON& name : *names) {
        if (!name.is_string()) return std::nullopt;
        request.trackNames.push_back(name.get<std::string>());
    }
    return request;
}

bool takes(const SimulatedTrack& track, bool SimulatedTrack::* flag) {
    using enum SimulatedTrack::Type;
    const auto isOneOf = [&](std::initializer_list<SimulatedTrack::Type> types) {
        return !track.isFolder && std::ranges::find(types, track.type) != types.end();
    };
    if (flag == &SimulatedTrack::recordArmed) return isOneOf({audio, instrument, midi, vca});
    if (flag == &SimulatedTrack::inputMonitor) return isOneOf({audio, instrument, vca});
    return !isOneOf({video, master});
}

std::optional<ScriptingFailure> setOnTracks(SimulatedSession& session, const SetRequest& request,
                                            bool SimulatedTrack::* flag) {
    std::vector<int> ids;
    for (const std::string& name : request.trackNames) {
        const SimulatedTrack* const track = session.findByName(name);
        if (track == nullptr)
            return ScriptingFailure{ScriptingError::noTrackFound, "There is no track \"" + name + "\""};
        if (!takes(*track, flag))
            return ScriptingFailure{ScriptingError::forbiddenTrackType, "Not for tracks like \"" + name + "\""};
        ids.push_back(track->id);
    }
    for (const int id : ids)
        session.change(id, [&](SimulatedTrack& track) { track.*flag = request.enabled; });
    return std::nullopt;
}

} // namespace lumbrine
