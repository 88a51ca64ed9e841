// What a view of the activity log needs to know about its lines.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

// What the symbol at the beginning of a line says about it. In lines of the second surface it stands behind "[9-16] ".
enum class LogMarker { none, success, failure, warning, started, received, longJob };

struct MarkedLine {
    LogMarker marker;
    std::size_t begin;  // of the symbol, in bytes
    std::size_t length; // 0 for none
};
MarkedLine markerOf(std::string_view line);

// How the lines on the screen become those of the log: the first `gone` of them disappear, the rest stays, and the
// lines of the log from `firstNew` on come after it. As many as possible stay.
struct LogChange {
    std::size_t gone;
    std::size_t firstNew;
};
LogChange changeBetween(const std::vector<std::string>& onScreen, const std::vector<std::string>& log);

} // namespace lumbrine
