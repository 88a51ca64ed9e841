#include "app/macos/log_pieces.h"

#include "base/utf8.h"

#include <string_view>

namespace lumbrine {

namespace {

// In UTF-16 units, of well-formed UTF-8.
std::size_t lengthOf(std::string_view text) {
    constexpr char32_t firstPair = 0x10000; // from here on, a character takes two units
    std::size_t length = 0;
    while (!text.empty()) {
        const auto [code, size] = firstCharacter(text);
        length += code && *code >= firstPair ? 2 : 1;
        text.remove_prefix(size);
    }
    return length;
}

std::string timeColumn(const LogRow& row) {
    return row.time.empty() ? std::string() : row.time + "  ";
}

} // namespace

LogPiece pieceOf(const LogRow& row) {
    const std::string time = timeColumn(row);
    const std::string line = isUTF8(row.line) ? row.line : std::string();
    const MarkedLine marked = markerOf(line);
    return {.text = time + line + "\n",
            .timeLength = lengthOf(time),
            .signBegin = lengthOf(time) + lengthOf(std::string_view(line).substr(0, marked.begin)),
            .signLength = lengthOf(std::string_view(line).substr(marked.begin, marked.length)),
            .marker = marked.marker};
}

LogEdit editBetween(const std::vector<LogRow>& onScreen, const std::vector<LogRow>& log) {
    const RowChange change = changeBetween(onScreen, log);
    LogEdit edit{.gone = 0, .kept = 0, .added = {}};
    for (std::size_t i = 0; i < change.gone; ++i)
        edit.gone += lengthOf(pieceOf(onScreen[i]).text);
    for (std::size_t i = 0; i < change.kept; ++i)
        edit.kept += lengthOf(pieceOf(log[i]).text);
    for (std::size_t i = change.kept; i < log.size(); ++i)
        edit.added.push_back(pieceOf(log[i]));
    return edit;
}

} // namespace lumbrine
