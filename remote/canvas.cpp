#include "remote/canvas.h"

#include "remote/terminal_text.h"

#include <algorithm>

namespace lumbrine::remote {

Canvas::Canvas(int rowCount, int columnCount)
    : height(std::max(0, rowCount)), width(std::max(0, columnCount)), cells(index(height, 0)) {}

void Canvas::put(int row, int column, std::string_view text, Style style) {
    if (row < 0 || row >= height) return;
    for (const Glyph& glyph : glyphsOf(text)) {
        const int end = column + glyph.columns;
        if (column >= 0 && end <= width) {
            cells[index(row, column)] = {glyph.text, style};
            if (glyph.columns == 2) cells[index(row, column + 1)] = {"", style};
        }
        column = end;
    }
}

void Canvas::putFitted(int row, int column, std::string_view text, int columns, Style style) {
    put(row, column, fitted(text, columns), style);
}

std::string Canvas::line(int row) const {
    std::string text;
    for (int column = 0; column < width; ++column)
        text += at(row, column).text;
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

} // namespace lumbrine::remote
