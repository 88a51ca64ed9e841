// A page of styled characters, as large as a terminal: what the layout fills and a terminal draws.
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
    std::optional<RGBColor> background = {}; // the terminal takes the nearest colour it has, and black or white upon it

    bool operator==(const Style&) const = default;
};

struct Cell {
    std::string text = " "; // one glyph; empty for the right half of a wide one
    Style style = {};

    bool operator==(const Cell&) const = default;
};

class Canvas {
public:
    Canvas(int rowCount, int columnCount);

    int rows() const { return height; }
    int columns() const { return width; }

    // Text that is printable (remote/terminal_text.h), from that place to the right. What does not fit on the page is
    // left out, and a wide glyph that fits only half.
    void put(int row, int column, std::string_view text, Style style = {});

    // The same, cut or filled with blanks to a number of columns.
    void putFitted(int row, int column, std::string_view text, int columns, Style style = {});

    // The row and column must be on the page.
    const Cell& at(int row, int column) const { return cells[index(row, column)]; }

    // The characters of a row without the blanks at its end.
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
