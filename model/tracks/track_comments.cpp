#include "model/tracks/track_comments.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace lumbrine {

namespace {

// The tracks whose full names are known, not empty, and no other track's; by name.
std::map<std::string_view, const Track*> uniqueNames(const std::vector<Track>& tracks) {
    std::map<std::string_view, const Track*> unique;
    for (const Track& track : tracks) {
        if (!track.name || track.name->empty()) continue;
        const auto [entry, isFirst] = unique.emplace(*track.name, &track);
        if (!isFirst) entry->second = nullptr;
    }
    std::erase_if(unique, [](const auto& entry) { return entry.second == nullptr; });
    return unique;
}

bool sameNames(const std::vector<Track>& left, const std::vector<Track>& right) {
    return std::ranges::equal(left, right, [](const Track& one, const Track& other) {
        return one.display == other.display && one.name == other.name && one.id == other.id;
    });
}

} // namespace

TrackComments::Wanted TrackComments::wanted() const {
    Wanted wanted{.names = {}, .tracks = state.published.session.tracks};
    for (const auto& [name, track] : uniqueNames(wanted.tracks))
        wanted.names.emplace_back(name);
    return wanted;
}

void TrackComments::adopt(const Wanted& wanted, const std::map<std::string, std::string>& found) {
    if (!sameNames(wanted.tracks, state.published.session.tracks)) return;
    for (const auto& [name, track] : uniqueNames(wanted.tracks))
        if (const auto comment = found.find(std::string(name)); comment != found.end())
            known[comment->first] = {.comment = comment->second, .id = track->id};
    publish();
}

void TrackComments::followNames() {
    if (!known.empty()) {
        const auto names = uniqueNames(state.published.session.tracks);
        std::erase_if(known, [&](const auto& entry) {
            const auto track = names.find(entry.first);
            return track == names.end() || track->second->id != entry.second.id;
        });
    }
    publish();
}

void TrackComments::publish() {
    for (Track& track : state.published.session.tracks) {
        const auto comment = track.name ? known.find(*track.name) : known.end();
        std::string text = comment == known.end() ? std::string() : comment->second.comment;
        if (std::exchange(track.comment, text) != text) state.fullTableDirty = true;
    }
}

} // namespace lumbrine
