#include "model/tracks/group_mute_solo.h"

#include <utility>

namespace lumbrine {

GroupMuteSolo::GroupMuteSolo(const Jobs& jobs, const ReceiverState& state, ActivityLog& log, ScriptingLink& scripting,
                             TrackMetadata& metadata)
    : jobs(jobs), state(state), log(log), scripting(scripting), metadata(metadata) {}

void GroupMuteSolo::groupSetMuteSolo(std::vector<int> members, bool isSolo, bool enabled) {
    jobs.runOnMain([this, members = std::move(members), isSolo, enabled] {
        std::vector<std::string> names = fullNames(members);
        if (names.empty()) return;
        scripting.onQueue(
            [this, names = std::move(names), isSolo, enabled](PTSLClient& ptsl) { set(ptsl, names, isSolo, enabled); });
    });
}

std::vector<std::string> GroupMuteSolo::fullNames(const std::vector<int>& members) const {
    const std::vector<Track>& tracks = state.published.session.tracks;
    std::vector<std::string> names;
    for (const int member : members) {
        if (member < 0 || member >= std::ssize(tracks)) continue;
        const auto& name = tracks[static_cast<std::size_t>(member)].name;
        if (name && !name->empty()) names.push_back(*name);
    }
    return names;
}

void GroupMuteSolo::set(PTSLClient& ptsl, const std::vector<std::string>& names, bool isSolo, bool enabled) {
    const auto done = isSolo ? ptsl.setSolo(names, enabled) : ptsl.setMute(names, enabled);
    if (!done) {
        jobs.runOnMain([this, error = done.error()] { scripting.notePTSLFailure(error); });
        return;
    }
    metadata.refreshFullNames();
    jobs.runOnMain([this, count = names.size(), isSolo, enabled] { report(count, isSolo, enabled); });
}

void GroupMuteSolo::report(std::size_t count, bool isSolo, bool enabled) {
    const std::string number = std::to_string(count);
    const std::string onOrOff = enabled ? "ON" : "OFF";
    log.say("✓ Group: " + std::string(isSolo ? "solo" : "mute") + " " + onOrOff + " for " + number + " tracks",
            "✓ グループ " + number + " 本を" + (isSolo ? "ソロ" : "ミュート") + onOrOff);
}

} // namespace lumbrine
