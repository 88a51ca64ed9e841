// The colours of the window, made from the desktop's palette: calm on a light desktop and on a dark one.
#pragma once

#include "app/log_lines.h"

#include <QColor>
#include <QPalette>

namespace lumbrine {

struct Colours {
    explicit Colours(const QPalette& palette);

    bool dark; // the desktop's
    QColor text;
    QColor secondary; // text that stands back
    QColor card;      // areas that lift off the window
    QColor line;      // their edges, and scales
    QColor good;
    QColor bad;
    QColor warning;
    QColor accent;
    QColor received;

    QColor of(LogMarker marker) const;
};

// `share` of `over` on `under`.
QColor blend(const QColor& under, const QColor& over, double share);

} // namespace lumbrine
