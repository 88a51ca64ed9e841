// The activity log as the text of a view: which characters go, stay and come, and what is coloured. Positions and
// lengths count UTF-16 units, as Foundation does.
#pragma once

#include "app/log_lines.h"
#include "app/log_record.h"

#include <cstddef>
#include <string>
#include <vector>

namespace lumbrine {

// The characters of one row: its time, its line, and the end of the line.
struct LogPiece {
    std::string text; // a line that is not UTF-8 is empty
    std::size_t timeLength;
    std::size_t signBegin;
    std::size_t signLength; // 0 when there is none
    LogMarker marker;

    bool operator==(const LogPiece&) const = default;
};
LogPiece pieceOf(const LogRow& row);

// How the view's text becomes that of the log: the first `gone` characters go, the next `kept` stay, what follows them
// goes, and the pieces are appended.
struct LogEdit {
    std::size_t gone;
    std::size_t kept;
    std::vector<LogPiece> added;

    bool operator==(const LogEdit&) const = default;
};
LogEdit editBetween(const std::vector<LogRow>& onScreen, const std::vector<LogRow>& log);

} // namespace lumbrine
