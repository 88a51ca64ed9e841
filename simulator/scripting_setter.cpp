#include "simulator/scripting_setter.h"

#include "simulator/scripting_json.h"

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

std::optional<std::string> setOnTracks(SimulatedSession& session, const SetRequest& request,
                                       bool SimulatedTrack::* flag) {
    std::vector<int> ids;
    for (const std::string& name : request.trackNames) {
        const SimulatedTrack* const track = session.findByName(name);
        if (track == nullptr) return name;
        ids.push_back(track->id);
    }
    for (const int id : ids)
        session.change(id, [&](SimulatedTrack& track) { track.*flag = request.enabled; });
    return std::nullopt;
}

} // namespace lumbrine
