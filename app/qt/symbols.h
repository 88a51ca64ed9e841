// The symbols of the window and of the status icon. They are drawn as vectors, so they are sharp at every scale.
#pragma once

#include "app/receiver_screen.h"

#include <QColor>
#include <QIcon>
#include <QPainter>

namespace lumbrine {

// Paints a symbol inside `box`, a square, in one colour.
void paintSymbol(QPainter& painter, const QRectF& box, Symbol symbol, const QColor& colour);

// An icon in the text colour of buttons. It follows changes of the palette.
QIcon symbolIcon(Symbol symbol);

// The program's logo, for windows and the status area; its dark plate is visible on panels of any colour.
QIcon programIcon(double opacity);

} // namespace lumbrine
