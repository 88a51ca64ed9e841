#include "model/track_window.h"

#include <algorithm>

namespace lumbrine {

bool isBlank(std::string_view name) {
    return name.find_first_not_of(" \t") == std::string_view::npos;
}

std::string_view trimSpaces(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

int locate(std::span<const std::string> map, std::span<const std::string> window) {
    if (std::ranges::all_of(window, isBlank)) return -1;
    const auto padded = [map](std::size_t i) { return i < map.size() ? std::string_view(map[i]) : std::string_view{}; };
    int found = -1;
    for (std::size_t start = 0; start <= map.size(); ++start) {
        std::size_t same = 0;
        while (same < window.size() && padded(start + same) == window[same])
            ++same;
        if (same < window.size()) continue;
        if (found >= 0) return -1;
        found = static_cast<int>(start);
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
