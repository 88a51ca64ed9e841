// QR codes for terminals and logs.
#pragma once

#include <string>
#include <vector>

namespace lumbrine {

enum class QRColours {
    blackOnWhite, // by escape sequences
    lightBlocks,  // no escape sequences, for files and logs; right on a dark background
};

// The lines that draw it, two rows of modules in each, with a margin. Empty when the text is too long for a QR code.
std::vector<std::string> qrLines(const std::string& text, QRColours colours);

} // namespace lumbrine
