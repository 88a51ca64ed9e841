#include "model/tracks/track_comments.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace lumbrine {

namespace {

// The full names that are known, not empty, and occur once; sorted.
std::vector<std::string_view> uniqueNames(const std::vector<Track>& tracks) {
    std::vector<std::string_view> sorted;
    for (const Track& track : tracks)
        if (track.name) sorted.push_back(*track.name);
    std::ranges::sort(sorted);
    std::vector<std::string_view> unique;
    for (auto first = sorted.begin(); first != sorted.end();) {
        const auto next = std::find_if(first, sorted.end(), [&](std::string_view name) { return name != *first; });
        if (next - first == 1 && !first->empty()) unique.push_back(*first);
        first = next;
    }
    return unique;
}

bool sameNames(const std::vector<Track>& left, const std::vector<Track>& right) {
    return std::ranges::equal(left, right, [](const Track& one, const Track& other) {
        return one.display == other.display && one.name == other.name;
    });
}

} // namespace

TrackComments::Wanted TrackComments::wanted() const {
    const auto names = uniqueNames(state.published.session.tracks);
    return {.names = {names.begin(), names.end()}, .tracks = state.published.session.tracks};
}

void TrackComments::adopt(const Wanted& wanted, const std::map<std::string, std::string>& found) {
    if (!sameNames(wanted.tracks, state.published.session.tracks)) return;
    for (const std::string& name : wanted.names)
        if (const auto comment = found.find(name); comment != found.end()) known[name] = comment->second;
    publish();
}

void TrackComments::followNames() {
    if (!known.empty()) {
        const auto names = uniqueNames(state.published.session.tracks);
        std::erase_if(known, [&](const auto& entry) { return !std::ranges::binary_search(names, entry.first); });
    }
    publish();
}

void TrackComments::publish() {
    for (Track& track : state.published.session.tracks) {
        const auto comment = track.name ? known.find(*track.name) : known.end();
        std::string text = comment == known.end() ? std::string() : comment->second;
        if (std::exchange(track.comment, text) != text) state.fullTableDirty = true;
    }
}

} // namespace lumbrine
