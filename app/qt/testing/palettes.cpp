#include "app/qt/testing/palettes.h"

namespace lumbrine {

namespace {

QPalette paletteOf(const QColor& window, const QColor& text, const QColor& base) {
    QPalette palette(window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, base);
    return palette;
}

} // namespace

QPalette lightPalette() {
    return paletteOf("#efefef", "#202020", "#ffffff");
}

QPalette darkPalette() {
    return paletteOf("#2b2d30", "#e6e6e6", "#1e1f22");
}

} // namespace lumbrine
