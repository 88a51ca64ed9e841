#include "app/qt/colours.h"

namespace lumbrine {

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
      line(blend(palette.color(QPalette::Window), text, dark ? 0.2 : 0.16)), good(dark ? "#4cc38a" : "#187446"),
      bad(dark ? "#ff7b72" : "#c0332a"), warning(dark ? "#f2b54b" : "#8a5300"), accent(dark ? "#6cb0f5" : "#1a64b6"),
      received(dark ? "#b9a3f3" : "#6d4bc4") {}

QColor Colours::of(LogMarker marker) const {
    switch (marker) {
    case LogMarker::success:
        return good;
    case LogMarker::failure:
        return bad;
    case LogMarker::warning:
        return warning;
    case LogMarker::started:
    case LogMarker::longJob:
        return accent;
    case LogMarker::received:
        return received;
    case LogMarker::none:
        break;
    }
    return text;
}

} // namespace lumbrine
