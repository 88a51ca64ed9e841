#include "platform/linux/qr_code.h"

#include <qrencode.h>

#include <memory>

namespace lumbrine {

std::optional<QRCode> makeQRCode(const std::string& text) {
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> made(QRcode_encodeString8bit(text.c_str(), 0, QR_ECLEVEL_M),
                                                               QRcode_free);
    if (!made) return std::nullopt;
    QRCode code{.width = made->width, .dark = {}};
    for (int i = 0; i < made->width * made->width; ++i)
        code.dark.push_back((made->data[i] & 1) != 0);
    return code;
}

} // namespace lumbrine
