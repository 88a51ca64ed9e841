// For views of the activity log: the marker of each line.
#pragma once

#include <cstddef>
#include <string_view>

namespace lumbrine {

// The meaning of the symbol at the beginning of a line. In lines of the second surface, "[9-16] " precedes the symbol.
enum class LogMarker { none, success, failure, warning, started, received, longJob };

struct MarkedLine {
    LogMarker marker;
    std::size_t begin;  // offset of the symbol in bytes
    std::size_t length; // of the symbol in bytes; 0 when there is none
};
MarkedLine markerOf(std::string_view line);

} // namespace lumbrine
