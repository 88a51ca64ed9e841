#include "tests/simulation/source_truth.h"

#include "model/testing/session_columns.h"

#include <cstdlib>

namespace lumbrine::simulation {

namespace {

std::string beginOfCommentOn(int trackID) {
    return "track " + std::to_string(trackID) + ", remark ";
}

// Its list has other tracks than the surfaces.
bool listsOthers(const SimulatedProTools& proTools) {
    const SimulatedSession session = proTools.session();
    return proTools.options.screen.hiddenTracksListed && session.tracks().size() != session.shownTracks().size();
}

} // namespace

RGBColor colorOf(const std::string& argb) {
    return static_cast<std::uint32_t>(std::strtoul(argb.c_str() + 1, nullptr, 16));
}

std::vector<HostTrack> tracksOf(const SimulatedProTools& proTools) {
    const Names displays = viewOf(proTools).names;
    const SimulatedSession session = proTools.session();
    std::vector<HostTrack> tracks;
    for (const int id : session.shownTracks()) {
        const SimulatedTrack& track = *session.find(id);
        tracks.push_back({id, displays[tracks.size()], track.name, colorOf(track.color), track.comment});
    }
    return tracks;
}

Names displaysOf(const std::vector<HostTrack>& tracks) {
    Names displays;
    for (const HostTrack& track : tracks)
        displays.push_back(track.display);
    return displays;
}

std::string commentOn(int trackID, std::uint64_t remark) {
    return beginOfCommentOn(trackID) + std::to_string(remark);
}

bool isCommentOn(int trackID, const std::string& comment) {
    return comment.starts_with(beginOfCommentOn(trackID));
}

std::string wrongWithSources(const Sources& sources, const ReceiverState& state, const SimulatedProTools& proTools) {
    const std::vector<HostTrack> tracks = tracksOf(proTools);
    const auto mixStrips = static_cast<std::size_t>(proTools.options.screen.mixStrips);
    const bool hasNames = sources.scripting || (sources.screen && !listsOthers(proTools));
    if (!hasNames) return {};
    const std::vector<Track>& known = state.published.session.tracks;
    if (namesOf(state.published.session).size() != tracks.size()) return "there are no full names";
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        const std::string which = " of track " + std::to_string(i + 1);
        if (known[i].name != tracks[i].name) return "the full name" + which + " is wrong";
        const auto color = sources.scripting ? std::optional(tracks[i].color) : std::nullopt;
        if (known[i].color != color) return "the colour" + which + " is wrong";
        const std::string comment = sources.screen && i < mixStrips ? tracks[i].comment : "";
        if (i < mixStrips && known[i].comment != comment) return "the comment" + which + " is wrong";
    }
    return {};
}

} // namespace lumbrine::simulation
