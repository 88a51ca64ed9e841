#include "app/qt/strips_view.h"

#include "app/qt/strip_painter.h"
#include "app/qt/strips_accessible.h"
#include "app/qt/texts.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

namespace lumbrine {

namespace {

constexpr int gapBetween = 3;
constexpr int narrowest = 38;   // a strip of this width has room for four characters
constexpr int comfortable = 66; // for a name of nine letters
constexpr double standBack = 0.45;

} // namespace

StripsView::StripsView(QWidget* parent) : QWidget(parent) {
    describeStripsToScreenReaders();
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void StripsView::display(const std::vector<StripView>& strips, bool live) {
    if (live != shownLive || strips.size() != shownStrips.size()) {
        const bool otherNumber = strips.size() != shownStrips.size();
        shownLive = live;
        shownStrips = strips;
        if (otherNumber) updateGeometry();
        update();
    } else {
        for (std::size_t i = 0; i < strips.size(); ++i) {
            if (strips[i] == shownStrips[i]) continue;
            shownStrips[i] = strips[i];
            update(placeOf(i));
        }
    }
}

QSize StripsView::minimumSizeHint() const {
    const int rows = static_cast<int>(shownStrips.size()) > stripsPerSurface && columns() == stripsPerSurface ? 2 : 1;
    return {stripsPerSurface * (narrowest + gapBetween), rows * stripHeight(font()) + (rows - 1) * gapBetween};
}

QSize StripsView::sizeHint() const {
    return minimumSizeHint() + QSize(0, 60);
}

int StripsView::columns() const {
    const int all = std::max(static_cast<int>(shownStrips.size()), stripsPerSurface);
    return width() >= all * (comfortable + gapBetween) ? all : stripsPerSurface;
}

QRect StripsView::placeOf(std::size_t strip) const {
    const int inRow = columns();
    const int rows = std::max(1, (static_cast<int>(shownStrips.size()) + inRow - 1) / inRow);
    const int column = static_cast<int>(strip) % inRow;
    const int row = static_cast<int>(strip) / inRow;
    const int left = (width() + gapBetween) * column / inRow;
    const int right = (width() + gapBetween) * (column + 1) / inRow - gapBetween;
    const int top = (height() + gapBetween) * row / rows;
    const int bottom = (height() + gapBetween) * (row + 1) / rows - gapBetween;
    return {left, top, right - left, bottom - top};
}

void StripsView::paintEvent(QPaintEvent* event) {
    ++paints;
    QPainter painter(this);
    if (!shownLive) painter.setOpacity(standBack);
    const StripPainter strips(palette(), font());
    for (std::size_t i = 0; i < shownStrips.size(); ++i)
        if (event->region().intersects(placeOf(i))) strips.paint(painter, placeOf(i), shownStrips[i]);
    if (hasFocus()) {
        painter.setOpacity(1);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        if (current() >= 0)
            painter.drawRoundedRect(QRectF(placeOf(static_cast<std::size_t>(current()))).adjusted(1, 1, -1, -1), 5, 5);
    }
}

void StripsView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    makeCurrent(current());
}

void StripsView::keyPressEvent(QKeyEvent* event) {
    if (event->modifiers() != Qt::NoModifier && event->modifiers() != Qt::KeypadModifier)
        return QWidget::keyPressEvent(event);
    switch (event->key()) {
    case Qt::Key_Left:
        return makeCurrent(current() - 1);
    case Qt::Key_Right:
        return makeCurrent(current() + 1);
    case Qt::Key_Up:
        return makeCurrent(current() - stripsPerSurface);
    case Qt::Key_Down:
        return makeCurrent(current() + stripsPerSurface);
    case Qt::Key_Home:
        return makeCurrent(0);
    case Qt::Key_End:
        return makeCurrent(count() - 1);
    default:
        return QWidget::keyPressEvent(event);
    }
}

// A strip that is not there changes nothing.
void StripsView::makeCurrent(int strip) {
    if (strip < 0 || strip >= count()) return;
    currentStrip = strip;
    update();
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(strip);
    QAccessible::updateAccessibility(&event);
}

void StripsView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

// Shows the description of the strip under the pointer as a tooltip.
bool StripsView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    for (std::size_t i = 0; i < shownStrips.size(); ++i) {
        if (!placeOf(i).contains(help->pos())) continue;
        QToolTip::showText(help->globalPos(), shownTip(shownStrips[i].spoken), this, placeOf(i));
        return true;
    }
    QToolTip::hideText();
    return true;
}

} // namespace lumbrine
