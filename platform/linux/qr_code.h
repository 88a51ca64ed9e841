// QR codes, by libqrencode.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

struct QRCode {
    int width;              // in modules; the code is a square, without the light margin around it
    std::vector<bool> dark; // row by row

    bool isDark(int row, int column) const {
        return dark[static_cast<std::size_t>(row) * static_cast<std::size_t>(width) + static_cast<std::size_t>(column)];
    }
};

// Absent when the text is too long.
std::optional<QRCode> makeQRCode(const std::string& text);

} // namespace lumbrine
