// For views of the activity log: the marker of each line, and how the lines on the screen have to change.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

// The meaning of the symbol at the beginning of a line. In lines of the second surface, "[9-16] " precedes the symbol.
enum class LogMarker { none, success, failure, warning, started, received, longJob };

struct MarkedLine {
    LogMarker marker;
    std::size_t begin;  // offset of the symbol in bytes
    std::size_t length; // of the symbol in bytes; 0 when there is none
};
MarkedLine markerOf(std::string_view line);

// The smallest change from the lines on the screen to those of the log: remove the first `gone` lines, keep the rest,
// and append the lines of the log from `firstNew` on.
struct LogChange {
    std::size_t gone;
    std::size_t firstNew;
};
LogChange changeBetween(const std::vector<std::string>& onScreen, const std::vector<std::string>& log);

} // namespace lumbrine
