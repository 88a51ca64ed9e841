// Text on its way to a terminal: made harmless, measured in columns, cut to a width.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::remote {

// The text with everything replaced by "?" that would not show as a character of its own: control characters, marks
// that turn the direction of writing, invisible spaces. A sequence that is not UTF-8 becomes one U+FFFD.
std::string printable(std::string_view text);

// What fills a cell of a terminal or two: a character and the marks that combine with it.
struct Glyph {
    std::string text;
    int columns; // 1, or 2 for the wide characters of East Asia and pictures
};

// The glyphs of a text that is printable already. Combining marks at its very start stand by themselves.
std::vector<Glyph> glyphsOf(std::string_view text);

int columnsOf(std::string_view text);

// The text cut to that many columns, or blanks behind it up to them. A wide character that would stick out becomes a
// blank.
std::string fitted(std::string_view text, int columns);

} // namespace lumbrine::remote
