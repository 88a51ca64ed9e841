// Paints one channel strip.
#pragma once

#include "app/qt/colours.h"
#include "app/receiver_screen.h"

#include <QFont>
#include <QPainter>
#include <QPalette>
#include <QRectF>

namespace lumbrine {

class StripPainter {
public:
    StripPainter(const QPalette& palette, const QFont& font);

    void paint(QPainter& painter, const QRectF& place, const StripView& strip) const;

private:
    enum class Lit { off, on, implied };

    void paintHeader(QPainter& painter, const QRectF& place, const StripView& strip) const;
    void paintSwitches(QPainter& painter, const QRectF& place, const StripView& strip) const;
    void paintSwitch(QPainter& painter, const QRectF& place, const QString& letter, const QColor& light, Lit lit) const;
    void paintFader(QPainter& painter, const QRectF& place, double value) const;
    void paintName(QPainter& painter, const QRectF& place, const StripView& strip) const;

    const Colours colours;
    const QColor highlight;
    QFont letterFont;
    QFont nameFont;
};

// The smallest height of a strip in pixels at which everything fits.
int stripHeight(const QFont& font);

} // namespace lumbrine
