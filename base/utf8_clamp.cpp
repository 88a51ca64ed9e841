#include "base/utf8_clamp.h"

#include <cstdint>

namespace lumbrine {

namespace {

std::size_t characterLength(std::string_view text) {
    const auto lead = static_cast<std::uint8_t>(text.front());
    const std::size_t announced = lead >= 0xF0 && lead <= 0xF4  ? 4
                                  : lead >= 0xE0 && lead < 0xF0 ? 3
                                  : lead >= 0xC2 && lead < 0xE0 ? 2
                                                                : 1;
    if (announced > text.size()) return 1;
    for (std::size_t i = 1; i < announced; ++i)
        if ((static_cast<std::uint8_t>(text[i]) & 0xC0) != 0x80) return 1;
    return announced;
}

} // namespace

std::string_view utf8Clamp(std::string_view text, std::size_t maxBytes) {
    std::size_t kept = 0;
    while (kept < text.size()) {
        const std::size_t length = characterLength(text.substr(kept));
        if (kept + length > maxBytes) break;
        kept += length;
    }
    return text.substr(0, kept);
}

} // namespace lumbrine
