// A QR code as a picture.
#pragma once

#include "platform/linux/qr_code.h"

#include <QPixmap>

namespace lumbrine {

// Black on white on every desktop: a phone reads nothing else as well.
QPixmap pictureOf(const QRCode& code);

} // namespace lumbrine
