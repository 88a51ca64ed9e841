// The symbols of the window and the status icon, drawn by ourselves so that they are sharp at every scale.
#pragma once

#include "app/receiver_screen.h"

#include <QColor>
#include <QIcon>
#include <QPainter>

namespace lumbrine {

// Within the square of `box`, in one colour.
void paintSymbol(QPainter& painter, const QRectF& box, Symbol symbol, const QColor& colour);

// A symbol in the colour of the text on buttons, whatever the palette becomes.
QIcon symbolIcon(Symbol symbol);

// The program's own picture: the symbol on a dark plate, which shows on panels of every colour.
QIcon programIcon(Symbol symbol, double opacity);

} // namespace lumbrine
