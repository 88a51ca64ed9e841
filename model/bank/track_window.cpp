#include "model/bank/track_window.h"

#include "base/strip.h"

#include <algorithm>
#include <array>
#include <cassert>

namespace lumbrine {

bool isBlank(std::string_view name) {
    return name.find_first_not_of(" \t") == std::string_view::npos;
}

std::string_view trimSpaces(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// No name of the map is looked at again for another place, however alike the names are: what has fitted so far tells
// which later places it rules out.
int locate(std::span<const std::string> map, std::span<const std::string> window) {
    assert(window.size() <= stripCount);
    if (std::ranges::all_of(window, isBlank)) return -1;
    // How many names at the end of the window's first i + 1 are also its beginning.
    std::array<std::size_t, stripCount> borders{};
    for (std::size_t i = 1, same = 0; i < window.size(); ++i) {
        while (same > 0 && window[i] != window[same])
            same = borders[same - 1];
        if (window[i] == window[same]) ++same;
        borders[i] = same;
    }

    const std::string blank;
    int found = -1;
    for (std::size_t i = 0, same = 0; i < map.size() + window.size(); ++i) {
        const std::string& name = i < map.size() ? map[i] : blank;
        while (same > 0 && name != window[same])
            same = borders[same - 1];
        if (name == window[same]) ++same;
        if (same < window.size()) continue;
        if (found >= 0) return -1;
        found = static_cast<int>(i + 1 - window.size());
        same = borders[same - 1];
    }
    return found;
}

TrackNames mergeWindow(TrackNames map, std::span<const std::string> window) {
    std::size_t overlap = std::min(map.size(), window.size());
    while (overlap > 0 && !std::ranges::equal(std::span(map).last(overlap), window.first(overlap)))
        --overlap;
    const auto added = window.subspan(overlap);
    map.insert(map.end(), added.begin(), added.end());
    return map;
}

TrackNames trimTrailingEmpty(TrackNames names) {
    while (!names.empty() && isBlank(names.back()))
        names.pop_back();
    return names;
}

} // namespace lumbrine
