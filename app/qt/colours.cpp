#include "app/qt/colours.h"

namespace lumbrine {

QColor toQColor(RGBColor colour) {
    return {colour.red(), colour.green(), colour.blue()};
}

QColor blend(const QColor& under, const QColor& over, double share) {
    const auto mixed = [share](float a, float b) { return static_cast<float>(a + (b - a) * share); };
    return QColor::fromRgbF(mixed(under.redF(), over.redF()), mixed(under.greenF(), over.greenF()),
                            mixed(under.blueF(), over.blueF()));
}

Colours::Colours(const QPalette& palette)
    : dark(palette.color(QPalette::Window).lightness() < 128), text(palette.color(QPalette::WindowText)),
      secondary(blend(text, palette.color(QPalette::Window), 0.32)),
      card(dark ? blend(palette.color(QPalette::Window), Qt::white, 0.055)
                : blend(palette.color(QPalette::Window), Qt::white, 0.75)),
      line(blend(palette.color(QPalette::Window), text, dark ? 0.2 : 0.16)), good(toQColor(signalColours().good)),
      bad(toQColor(signalColours().bad)), warning(toQColor(signalColours().warning)),
      accent(toQColor(signalColours().accent)), received(toQColor(signalColours().received)) {}

QColor Colours::of(LogMarker marker) const {
    const auto signal = colourOf(marker, signalColours());
    return signal ? toQColor(*signal) : text;
}

QColor Colours::of(CheckState state) const {
    const auto signal = colourOf(state, signalColours());
    return signal ? toQColor(*signal) : secondary;
}

} // namespace lumbrine
