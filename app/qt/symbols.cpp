#include "app/qt/symbols.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainterPath>
#include <QPalette>
#include <array>
#include <utility>

namespace lumbrine {

namespace {

constexpr double grid = 24; // symbols are drawn in a square of 24 x 24 units

void paintSliders(QPainter& painter) {
    constexpr std::array<std::array<double, 2>, 3> knobs{{{5.5, 15.5}, {12, 8}, {18.5, 13}}};
    const QBrush brush = painter.brush();
    for (const auto& [x, y] : knobs) {
        painter.drawLine(QPointF(x, 4), QPointF(x, 20));
        painter.setBrush(painter.pen().color());
        painter.drawRoundedRect(QRectF(x - 2, y - 1.4, 4, 2.8), 1, 1);
        painter.setBrush(brush);
    }
}

void paintWarning(QPainter& painter, const QColor& colour) {
    QPainterPath path;
    path.moveTo(12, 4);
    path.lineTo(21, 19.5);
    path.lineTo(3, 19.5);
    path.closeSubpath();
    path.addRoundedRect(QRectF(11.1, 9, 1.8, 5.4), 0.9, 0.9);
    path.addEllipse(QPointF(12, 16.8), 1.1, 1.1);
    painter.fillPath(path, colour);
    QPainterPath edge;
    edge.addPolygon(QPolygonF({{12, 4}, {21, 19.5}, {3, 19.5}, {12, 4}}));
    painter.strokePath(edge, QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void paintReconnect(QPainter& painter) {
    const QRectF circle(5, 5, 14, 14);
    painter.drawArc(circle, 35 * 16, 125 * 16);
    painter.drawArc(circle, 215 * 16, 125 * 16);
    painter.drawPolyline(QPolygonF({{18.6, 3.6}, {18.2, 8.2}, {13.7, 7.6}}));
    painter.drawPolyline(QPolygonF({{5.4, 20.4}, {5.8, 15.8}, {10.3, 16.4}}));
}

void paintNetwork(QPainter& painter, const QColor& colour) {
    for (const double radius : {5.0, 9.5, 14.0})
        painter.drawArc(QRectF(12 - radius, 19 - radius, radius * 2, radius * 2), 48 * 16, 84 * 16);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(12, 18.2), 1.7, 1.7);
}

void paintChevron(QPainter& painter, double tip, double back) {
    painter.drawPolyline(QPolygonF({{back, 6}, {tip, 12}, {back, 18}}));
}

void paintPlay(QPainter& painter, const QColor& colour) {
    QPainterPath path;
    path.addEllipse(QPointF(12, 12), 9.5, 9.5);
    path.addPolygon(QPolygonF({{9.8, 7.8}, {16.4, 12}, {9.8, 16.2}, {9.8, 7.8}}));
    painter.fillPath(path, colour);
}

void paintCode(QPainter& painter, const QColor& colour) {
    for (const auto& [x, y] : {std::pair(4.0, 4.0), std::pair(14.0, 4.0), std::pair(4.0, 14.0)}) {
        painter.drawRect(QRectF(x, y, 6, 6));
        painter.fillRect(QRectF(x + 2, y + 2, 2, 2), colour);
    }
    for (const auto& [x, y] : {std::pair(13.0, 13.0), std::pair(18.0, 13.0), std::pair(15.5, 16.0),
                               std::pair(13.0, 18.5), std::pair(18.0, 18.5)})
        painter.fillRect(QRectF(x, y, 2.5, 2.5), colour);
}

void paintList(QPainter& painter, const QColor& colour) {
    for (const double y : {6.0, 12.0, 18.0}) {
        painter.fillRect(QRectF(3.5, y - 1.2, 2.4, 2.4), colour);
        painter.drawLine(QPointF(9, y), QPointF(20, y));
    }
}

void paintAbout(QPainter& painter, const QColor& colour) {
    painter.drawEllipse(QPointF(12, 12), 9, 9);
    painter.drawLine(QPointF(12, 11.5), QPointF(12, 16.5));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(12, 7.7), 1.4, 1.4);
}

// Paints the symbol again for every size, scale and palette, where a QIcon would scale a picture.
class SymbolEngine : public QIconEngine {
public:
    explicit SymbolEngine(Symbol symbol) : symbol(symbol) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        paintSymbol(*painter, rect, symbol, QGuiApplication::palette().color(group, QPalette::ButtonText));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return picture;
    }

    QIconEngine* clone() const override { return new SymbolEngine(symbol); }

private:
    const Symbol symbol;
};

QLinearGradient downwards(double top, double bottom, const char* first, const char* last) {
    QLinearGradient gradient(0, top, 0, bottom);
    gradient.setColorAt(0, QColor(first));
    gradient.setColorAt(1, QColor(last));
    return gradient;
}

// The drawing of packaging/com.tarnwick.lumbrine.svg, in its units of 128.
void paintLogo(QPainter& painter, double size) {
    constexpr std::array<std::array<double, 2>, 3> caps{{{26, 68}, {53, 36}, {80, 52}}};
    const auto rounded = [&painter](const QRectF& box, double radius, const QBrush& brush) {
        painter.setBrush(brush);
        painter.drawRoundedRect(box, radius, radius);
    };
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 128, size / 128);
    painter.setPen(Qt::NoPen);
    rounded({8, 8, 112, 112}, 24, downwards(8, 120, "#3a4452", "#1d232c"));
    for (const auto& [x, y] : caps) {
        rounded({x + 8, 24, 6, 80}, 3, QColor("#10141a"));
        rounded({x + 8, y + 8, 6, 96 - y}, 3, QColor("#f2a541"));
        rounded({x, y, 22, 16}, 4, downwards(y, y + 16, "#f6f8fa", "#c3cbd4"));
        painter.fillRect(QRectF(x + 3, y + 7, 16, 2), QColor("#2a323d"));
    }
}

} // namespace

void paintSymbol(QPainter& painter, const QRectF& box, Symbol symbol, const QColor& colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(box.topLeft());
    painter.scale(box.width() / grid, box.height() / grid);
    painter.setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    switch (symbol) {
    case Symbol::sliders:
        paintSliders(painter);
        break;
    case Symbol::warning:
        paintWarning(painter, colour);
        break;
    case Symbol::reconnect:
        paintReconnect(painter);
        break;
    case Symbol::network:
        paintNetwork(painter, colour);
        break;
    case Symbol::bankBack:
        paintChevron(painter, 4.5, 10.5);
        paintChevron(painter, 12.5, 18.5);
        break;
    case Symbol::channelBack:
        paintChevron(painter, 9, 15);
        break;
    case Symbol::channelForward:
        paintChevron(painter, 15, 9);
        break;
    case Symbol::bankForward:
        paintChevron(painter, 11.5, 5.5);
        paintChevron(painter, 19.5, 13.5);
        break;
    case Symbol::play:
        paintPlay(painter, colour);
        break;
    case Symbol::code:
        paintCode(painter, colour);
        break;
    case Symbol::list:
        paintList(painter, colour);
        break;
    case Symbol::about:
        paintAbout(painter, colour);
        break;
    }
    painter.restore();
}

QIcon symbolIcon(Symbol symbol) {
    return QIcon(new SymbolEngine(symbol));
}

QIcon programIcon(double opacity) {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 44, 48, 64, 128, 256}) {
        QPixmap plate(size, size);
        plate.fill(Qt::transparent);
        {
            QPainter painter(&plate);
            paintLogo(painter, size);
        }
        QPixmap picture(size, size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setOpacity(opacity);
        painter.drawPixmap(0, 0, plate);
        painter.end();
        icon.addPixmap(picture);
    }
    return icon;
}

} // namespace lumbrine
