#include "app/qt/strip_painter.h"

#include "app/light_colours.h"
#include "app/qt/texts.h"

#include <QFontMetricsF>
#include <algorithm>

namespace lumbrine {

namespace {

constexpr double stripCorner = 5;
constexpr double inset = 4; // between the edge of a strip and its contents
constexpr double colourBand = 4;
constexpr double switchHeight = 14;
constexpr double gap = 4;
constexpr double capHeight = 13;
constexpr double capWidth = 22;
constexpr double shortestFader = 44;
constexpr double nameShare = 0.86; // times the window's font size
constexpr double letterShare = 0.72;

const QColor displayBack("#1d2227");
const QColor displayText("#d8f3ec");

double nameHeight(const QFont& font) {
    return QFontMetricsF(font).height() * nameShare + 5;
}

QFont scaled(QFont font, double share, QFont::Weight weight) {
    font.setPointSizeF(std::max(font.pointSizeF() * share, 5.5));
    font.setWeight(weight);
    return font;
}

// Clips instead of eliding: at this width "…" would cost a letter.
QString cutToFit(QString text, const QFontMetricsF& metrics, double width) {
    while (!text.isEmpty() && metrics.horizontalAdvance(text) > width) {
        text.chop(text.back().isLowSurrogate() ? 2 : 1);
        text = text.trimmed();
    }
    return text;
}

} // namespace

int stripHeight(const QFont& font) {
    return static_cast<int>(inset + colourBand + gap + switchHeight + gap + shortestFader + gap + nameHeight(font) +
                            inset);
}

StripPainter::StripPainter(const QPalette& palette, const QFont& font)
    : colours(palette), highlight(palette.color(QPalette::Highlight)),
      letterFont(scaled(font, letterShare, QFont::DemiBold)), nameFont(scaled(font, nameShare, QFont::Medium)) {}

void StripPainter::paint(QPainter& painter, const QRectF& place, const StripView& strip) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(strip.select ? highlight : colours.line, strip.select ? 1.5 : 1));
    painter.setBrush(strip.select ? blend(colours.card, highlight, colours.dark ? 0.2 : 0.12) : colours.card);
    painter.drawRoundedRect(place.adjusted(0.75, 0.75, -0.75, -0.75), stripCorner, stripCorner);

    QRectF free = place.adjusted(inset, inset, -inset, -inset);
    const auto takeTop = [&free](double height) {
        const QRectF taken(free.left(), free.top(), free.width(), height);
        free.setTop(free.top() + height + gap);
        return taken;
    };
    paintHeader(painter, takeTop(colourBand), strip);
    paintSwitches(painter, takeTop(switchHeight), strip);
    const double name = QFontMetricsF(nameFont).height() + 5;
    const QRectF display(free.left(), free.bottom() - name, free.width(), name);
    paintName(painter, display, strip);
    paintFader(painter, QRectF(free.topLeft(), QPointF(free.right(), display.top() - gap)), strip.fader);
}

void StripPainter::paintHeader(QPainter& painter, const QRectF& place, const StripView& strip) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(strip.color ? toQColor(*strip.color) : colours.line);
    painter.drawRoundedRect(place, colourBand / 2, colourBand / 2);
}

void StripPainter::paintSwitches(QPainter& painter, const QRectF& place, const StripView& strip) const {
    const double width = (place.width() - 2) / 2;
    const QRectF left(place.left(), place.top(), width, place.height());
    painter.setFont(letterFont);
    paintSwitch(painter, left, QStringLiteral("M"), toQColor(muteLight),
                strip.impliedMute ? Lit::implied
                : strip.mute      ? Lit::on
                                  : Lit::off);
    paintSwitch(painter, left.translated(width + 2, 0), QStringLiteral("S"), toQColor(soloLight),
                strip.solo ? Lit::on : Lit::off);
}

void StripPainter::paintSwitch(QPainter& painter, const QRectF& place, const QString& letter, const QColor& light,
                               Lit lit) const {
    const QColor edge = lit == Lit::implied ? light : colours.line;
    painter.setPen(lit == Lit::on ? QPen(Qt::NoPen) : QPen(edge, lit == Lit::implied ? 2 : 1));
    painter.setBrush(lit == Lit::on ? light : QColor(Qt::transparent));
    const double inside = lit == Lit::implied ? 1 : 0.5;
    painter.drawRoundedRect(place.adjusted(inside, inside, -inside, -inside), 3, 3);
    painter.setPen(lit == Lit::on ? toQColor(letterOnLight) : lit == Lit::implied ? colours.text : colours.secondary);
    painter.drawText(place, Qt::AlignCenter, letter);
}

void StripPainter::paintFader(QPainter& painter, const QRectF& place, double value) const {
    const double x = place.center().x();
    const double top = place.top() + capHeight / 2;
    const double way = place.height() - capHeight;
    const double y = top + way * (1 - value);
    const double side = std::min(capWidth, place.width()) / 2;

    painter.setPen(QPen(colours.line, 1));
    for (int mark = 0; mark <= 4; ++mark) {
        const double at = top + way * mark / 4;
        painter.drawLine(QPointF(x - side, at), QPointF(x - side + 4, at));
        painter.drawLine(QPointF(x + side - 4, at), QPointF(x + side, at));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours.line);
    painter.drawRoundedRect(QRectF(x - 1.5, top, 3, way), 1.5, 1.5);
    painter.setBrush(colours.accent);
    painter.drawRoundedRect(QRectF(x - 1.5, y, 3, top + way - y), 1.5, 1.5);

    const QRectF cap(x - side, y - capHeight / 2, side * 2, capHeight);
    painter.setPen(QPen(blend(colours.card, colours.text, 0.5), 1));
    painter.setBrush(colours.dark ? QColor("#59626d") : QColor("#ffffff"));
    painter.drawRoundedRect(cap.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    painter.setPen(QPen(colours.text, 1.5));
    painter.drawLine(QPointF(cap.left() + 3, y), QPointF(cap.right() - 3, y));
}

void StripPainter::paintName(QPainter& painter, const QRectF& place, const StripView& strip) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(displayBack);
    painter.drawRoundedRect(place, 3, 3);
    if (strip.shownName().empty()) return;
    painter.setFont(nameFont);
    painter.setPen(displayText);
    painter.drawText(place, Qt::AlignCenter,
                     cutToFit(shown(strip.shownName()), QFontMetricsF(nameFont), place.width() - 2));
}

} // namespace lumbrine
