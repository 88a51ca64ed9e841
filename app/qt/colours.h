// The colours of the window, derived from the desktop's palette, for light and dark desktops.
#pragma once

#include "app/signal_colours.h"

#include <QColor>
#include <QPalette>

namespace lumbrine {

struct Colours {
    explicit Colours(const QPalette& palette);

    bool dark; // true on a dark desktop
    QColor text;
    QColor secondary; // less important text
    QColor card;      // background of areas that stand out from the window
    QColor line;      // edges of these areas, and scales
    QColor good;
    QColor bad;
    QColor warning;
    QColor accent;
    QColor received;

    QColor of(LogMarker marker) const;
    QColor of(CheckState state) const;

    const SignalColours& signalColours() const { return dark ? darkSignals : lightSignals; }
};

QColor toQColor(RGBColor colour);

// Mixes two colours: `share` (0-1) of `over` and the rest of `under`.
QColor blend(const QColor& under, const QColor& over, double share);

} // namespace lumbrine
