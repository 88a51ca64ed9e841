// A page of styled characters in the size of a terminal. The layout fills it and a terminal draws it.
#pragma once

#include "base/rgb_color.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::remote {

enum class Ink : std::uint8_t { plain, red, green, yellow, cyan };

struct Style {
    Ink ink = Ink::plain;
    bool bold = false;
    bool dim = false;
    bool reverse = false;
    std::optional<RGBColor> background = {}; // drawn in the terminal's nearest colour, with black or white text

    bool operator==(const Style&) const = default;
};

struct Cell {
    std::string text = " "; // one glyph; empty for the right half of a wide glyph
    Style style = {};

    bool operator==(const Cell&) const = default;
};

class Canvas {
public:
    Canvas(int rowCount, int columnCount);

    int rows() const { return height; }
    int columns() const { return width; }

    // Writes printable text (remote/terminal_text.h) from this place to the right. Glyphs that do not fit on the page
    // are left out, also a wide glyph of which only half fits.
    void put(int row, int column, std::string_view text, Style style = {});

    // Like `put`, with the text cut or padded with blanks to this number of columns.
    void putFitted(int row, int column, std::string_view text, int columns, Style style = {});

    // Precondition: row and column are on the page.
    const Cell& at(int row, int column) const { return cells[index(row, column)]; }

    // The characters of a row without trailing blanks.
    std::string line(int row) const;

    bool operator==(const Canvas&) const = default;

private:
    std::size_t index(int row, int column) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(width) + static_cast<std::size_t>(column);
    }

    int height;
    int width;
    std::vector<Cell> cells;
};

} // namespace lumbrine::remote
