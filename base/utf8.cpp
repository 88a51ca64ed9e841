#include "base/utf8.h"

#include <cstdint>
#include <cstring>

namespace lumbrine {

namespace {

// How many characters of one byte `text` begins with, at least.
std::size_t plainLength(std::string_view text) {
    constexpr std::uint64_t topBits = 0x8080808080808080;
    std::size_t length = 0;
    for (std::uint64_t eight = 0; text.size() - length >= sizeof eight; length += sizeof eight) {
        std::memcpy(&eight, text.data() + length, sizeof eight);
        if ((eight & topBits) != 0) break;
    }
    return length;
}

} // namespace

UTF8Character firstCharacter(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    if (lead < 0xC2 || lead > 0xF4) return {std::nullopt, 1};
    const std::size_t announced = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    // After these leads the second byte alone tells overlong forms, surrogates and what is beyond the last character.
    int low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    int high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    char32_t code = lead & (0x7FU >> announced);
    std::size_t length = 1;
    while (length < announced && length < text.size() && byte(length) >= low && byte(length) <= high) {
        code = code << 6 | (byte(length) & 0x3FU);
        low = 0x80;
        high = 0xBF;
        ++length;
    }
    if (length < announced) return {std::nullopt, length};
    return {code, length};
}

bool isUTF8(std::string_view text) {
    for (;;) {
        text.remove_prefix(plainLength(text));
        if (text.empty()) return true;
        const UTF8Character character = firstCharacter(text);
        if (!character.code) return false;
        text.remove_prefix(character.length);
    }
}

std::string repairedUTF8(std::string_view text) {
    if (isUTF8(text)) return std::string(text);
    std::string repaired;
    repaired.reserve(text.size());
    while (!text.empty()) {
        const UTF8Character character = firstCharacter(text);
        repaired += character.code ? text.substr(0, character.length) : "\uFFFD";
        text.remove_prefix(character.length);
    }
    return repaired;
}

namespace {

// Also the line and paragraph separators of Unicode.
bool breaksTheLine(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

} // namespace

std::string onOneLine(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (bool broken = false; !text.empty();) {
        const UTF8Character character = firstCharacter(text);
        const bool breaks = character.code && breaksTheLine(*character.code);
        if (!breaks) {
            line += character.code ? text.substr(0, character.length) : "\uFFFD";
        } else if (!broken) {
            line += ' ';
        }
        broken = breaks;
        text.remove_prefix(character.length);
    }
    return line;
}

std::string_view utf8Clamp(std::string_view text, std::size_t maxBytes) {
    std::size_t kept = 0;
    while (kept < text.size()) {
        const std::size_t length = firstCharacter(text.substr(kept)).length;
        if (kept + length > maxBytes) break;
        kept += length;
    }
    return text.substr(0, kept);
}

} // namespace lumbrine
