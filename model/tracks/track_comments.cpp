#include "model/tracks/track_comments.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace lumbrine {

namespace {

// Those that stand there once, in order.
std::vector<std::string_view> uniqueNames(const std::vector<std::string>& names) {
    std::vector<std::string_view> sorted(names.begin(), names.end());
    std::ranges::sort(sorted);
    std::vector<std::string_view> unique;
    for (auto first = sorted.begin(); first != sorted.end();) {
        const auto next = std::find_if(first, sorted.end(), [&](std::string_view name) { return name != *first; });
        if (next - first == 1 && !first->empty()) unique.push_back(*first);
        first = next;
    }
    return unique;
}

} // namespace

TrackComments::Wanted TrackComments::wanted() const {
    const PublishedState& published = state.published;
    Wanted wanted{.names = {}, .trackMap = published.trackMap, .trackMapFull = published.trackMapFull};
    if (published.trackMapFull.size() == published.trackMap.size()) {
        const auto names = uniqueNames(published.trackMapFull);
        wanted.names.assign(names.begin(), names.end());
    }
    return wanted;
}

void TrackComments::adopt(const Wanted& wanted, const std::map<std::string, std::string>& found) {
    const PublishedState& published = state.published;
    if (wanted.trackMap != published.trackMap || wanted.trackMapFull != published.trackMapFull) return;
    for (const std::string& name : wanted.names)
        if (const auto comment = found.find(name); comment != found.end()) known[name] = comment->second;
    publish();
}

void TrackComments::followNames() {
    if (!known.empty()) {
        const auto names = uniqueNames(state.published.trackMapFull);
        std::erase_if(known, [&](const auto& entry) { return !std::ranges::binary_search(names, entry.first); });
    }
    publish();
}

void TrackComments::publish() {
    const std::vector<std::string>& names = state.published.trackMapFull;
    std::vector<std::string> comments(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        if (const auto comment = known.find(names[i]); comment != known.end()) comments[i] = comment->second;
    if (std::exchange(state.session.trackMapComments, comments) != comments) state.session.fullTableDirty = true;
}

} // namespace lumbrine
