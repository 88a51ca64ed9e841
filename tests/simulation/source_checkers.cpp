#include "tests/simulation/source_checkers.h"

#include "model/testing/session_columns.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

using Violations = std::vector<std::string>;

std::string place(std::size_t index, TimePoint at) {
    return " of track " + std::to_string(index + 1) + " at " + std::to_string(inSeconds(at.time_since_epoch())) + " s";
}

void checkOne(Violations& violations, const ToldTracks& told, const std::vector<HostTrack>& tracks) {
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (told.full.size() == tracks.size() && told.full[i] != tracks[i].name)
            violations.push_back("the name" + place(i, told.at) + " is another's: " + told.full[i]);
        if (told.colors.size() == tracks.size() && told.colors[i] && *told.colors[i] != tracks[i].color)
            violations.push_back("the colour" + place(i, told.at) + " is another's");
        if (told.comments.size() == tracks.size() && !told.comments[i].empty() &&
            !isCommentOn(tracks[i].id, told.comments[i]))
            violations.push_back("the comment" + place(i, told.at) + " is another's: " + told.comments[i]);
    }
}

} // namespace

Violations checkToldTracks(const std::vector<ToldTracks>& told, const std::vector<HostTrack>& tracks) {
    Violations violations;
    const Names displays = displaysOf(tracks);
    for (const ToldTracks& moment : told)
        if (moment.map == displays) checkOne(violations, moment, tracks);
    return violations;
}

Violations checkNamedSources(const Sources& sources, const JobRecord& jobs) {
    Violations violations;
    for (const auto& [at, line] : jobs.lines) {
        const bool fromScreen = line.ends_with("(full names via AX)") && !sources.screen;
        const bool fromService = line.ends_with("(full names via PTSL)") && !sources.scripting;
        if (fromScreen || fromService) violations.push_back("names from a source that is not there: " + line);
    }
    return violations;
}

Violations checkToldLosses(const Sources& sources, const JobRecord& jobs) {
    const auto told = [&jobs](const std::string& beginning) {
        return std::ranges::count_if(jobs.lines, [&](const auto& line) { return line.second.starts_with(beginning); });
    };
    Violations violations;
    if (told("Track colors: unavailable (") > 1) violations.emplace_back("the service's absence was told twice");
    if (told("✓ Connected to Pro Tools' official API") > 0 && !sources.scripting)
        violations.emplace_back("a service was told of that is not there");
    return violations;
}

Violations checkRows(const Evidence& evidence) {
    Violations violations;
    const auto at = [](const Names& names, std::size_t index) {
        return index < names.size() ? names[index] : std::string();
    };
    const PublishedState& model = evidence.model;
    for (const auto& [index, track] : evidence.picture.session) {
        if (!track.row || index >= model.session.size()) continue;
        const Track& known = model.session.tracks[index];
        const std::string where = " of the client's row " + std::to_string(index + 1) + " differs";
        if (track.row->name != known.name.value_or(known.display)) violations.push_back("the name" + where);
        if (track.row->comment != at(evidence.comments, index)) violations.push_back("the comment" + where);
    }
    if (evidence.heldElements != 0) violations.emplace_back("elements of the screen are held at the end");
    return violations;
}

Violations checkSources(const Scenario& scenario, const Evidence& evidence) {
    Violations violations = checkNamedSources(scenario.sources, evidence.jobs);
    const auto add = [&](const Violations& more) { violations.insert(violations.end(), more.begin(), more.end()); };
    add(checkToldLosses(scenario.sources, evidence.jobs));
    add(checkRows(evidence));
    // A restless user adds, removes, renames and moves tracks.
    if (scenario.host.restlessUserEvery == Duration::zero()) add(checkToldTracks(evidence.told, evidence.tracks));
    return violations;
}

} // namespace lumbrine::simulation
