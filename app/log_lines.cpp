#include "app/log_lines.h"

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

} // namespace lumbrine
