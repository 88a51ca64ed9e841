#include "app/log_lines.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lumbrine {

MarkedLine markerOf(std::string_view line) {
    // "⚠️" (with U+FE0F) comes before its own prefix "⚠".
    constexpr std::array<std::pair<std::string_view, LogMarker>, 7> markers{{{"✓", LogMarker::success},
                                                                             {"✗", LogMarker::failure},
                                                                             {"⚠️", LogMarker::warning},
                                                                             {"⚠", LogMarker::warning},
                                                                             {"→", LogMarker::started},
                                                                             {"←", LogMarker::received},
                                                                             {"▶", LogMarker::longJob}}};
    constexpr std::string_view secondSurface = "[9-16] ";
    const std::size_t begin = line.starts_with(secondSurface) ? secondSurface.size() : 0;
    for (const auto& [symbol, marker] : markers)
        if (line.substr(begin).starts_with(symbol)) return {marker, begin, symbol.size()};
    return {LogMarker::none, 0, 0};
}

LogChange changeBetween(const std::vector<std::string>& onScreen, const std::vector<std::string>& log) {
    for (std::size_t gone = 0; gone < onScreen.size(); ++gone) {
        const std::size_t kept = onScreen.size() - gone;
        const auto begin = onScreen.begin() + static_cast<std::ptrdiff_t>(gone);
        if (kept <= log.size() && std::equal(begin, onScreen.end(), log.begin())) return {gone, kept};
    }
    return {onScreen.size(), 0};
}

} // namespace lumbrine
