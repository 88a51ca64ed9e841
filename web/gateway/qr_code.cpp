#include "web/gateway/qr_code.h"

#include <qrencode.h>

#include <memory>

namespace lumbrine::web {

namespace {

constexpr int margin = 2; // modules; half of what the standard asks for is enough for phones

class Modules {
public:
    explicit Modules(std::string_view text)
        : code(QRcode_encodeString8bit(std::string(text).c_str(), 0, QR_ECLEVEL_L), QRcode_free) {}

    int width() const { return code ? code->width : 0; }

    bool isDark(int row, int column) const {
        if (row < 0 || column < 0 || row >= width() || column >= width()) return false;
        return (code->data[row * width() + column] & 1) != 0;
    }

private:
    std::unique_ptr<QRcode, decltype(&QRcode_free)> code;
};

std::string_view block(bool upper, bool lower) {
    if (upper) return lower ? "█" : "▀";
    return lower ? "▄" : " ";
}

} // namespace

std::vector<std::string> qrCode(std::string_view text, QRColours colours) {
    const Modules modules(text);
    if (modules.width() == 0) return {};
    const bool drawsDark = colours == QRColours::blackOnWhite;
    std::vector<std::string> lines;
    for (int row = -margin; row < modules.width() + margin; row += 2) {
        std::string line = drawsDark ? "\033[30;107m" : "";
        for (int column = -margin; column < modules.width() + margin; ++column)
            line += block(modules.isDark(row, column) == drawsDark, modules.isDark(row + 1, column) == drawsDark);
        lines.push_back(line + (drawsDark ? "\033[0m" : ""));
    }
    return lines;
}

} // namespace lumbrine::web
