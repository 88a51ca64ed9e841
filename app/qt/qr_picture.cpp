#include "app/qt/qr_picture.h"

#include <QPainter>

namespace lumbrine {

namespace {

constexpr int moduleSize = 6;  // pixels
constexpr int lightMargin = 4; // modules, as the standard asks for

} // namespace

QPixmap pictureOf(const QRCode& code) {
    const int side = (code.width + 2 * lightMargin) * moduleSize;
    QPixmap picture(side, side);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    for (int row = 0; row < code.width; ++row)
        for (int column = 0; column < code.width; ++column)
            if (code.isDark(row, column))
                painter.fillRect((column + lightMargin) * moduleSize, (row + lightMargin) * moduleSize, moduleSize,
                                 moduleSize, Qt::black);
    return picture;
}

} // namespace lumbrine
