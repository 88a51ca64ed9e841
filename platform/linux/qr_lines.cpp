#include "platform/linux/qr_lines.h"

#include "platform/linux/qr_code.h"

namespace lumbrine {

namespace {

constexpr int margin = 2; // modules; half of what the standard asks for is enough for phones

std::string_view block(bool upper, bool lower) {
    if (upper) return lower ? "█" : "▀";
    return lower ? "▄" : " ";
}

} // namespace

std::vector<std::string> qrLines(const std::string& text, QRColours colours) {
    const auto code = makeQRCode(text);
    if (!code) return {};
    const bool drawsDark = colours == QRColours::blackOnWhite;
    const auto isDrawn = [&](int row, int column) {
        const bool inside = row >= 0 && column >= 0 && row < code->width && column < code->width;
        return (inside && code->isDark(row, column)) == drawsDark;
    };
    std::vector<std::string> lines;
    for (int row = -margin; row < code->width + margin; row += 2) {
        std::string line = drawsDark ? "\033[30;107m" : "";
        for (int column = -margin; column < code->width + margin; ++column)
            line += block(isDrawn(row, column), isDrawn(row + 1, column));
        lines.push_back(line + (drawsDark ? "\033[0m" : ""));
    }
    return lines;
}

} // namespace lumbrine
