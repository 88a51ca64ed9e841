#include "remote/terminal_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace lumbrine::remote {
namespace {

struct Character {
    char32_t code;
    std::size_t bytes;
};

struct Range {
    char32_t first;
    char32_t last;
};

constexpr std::array wide{
    Range{0x1100, 0x115F},   Range{0x2329, 0x232A},   Range{0x2E80, 0x303E},   Range{0x3041, 0x33FF},
    Range{0x3400, 0x4DBF},   Range{0x4E00, 0xA4CF},   Range{0xA960, 0xA97F},   Range{0xAC00, 0xD7A3},
    Range{0xF900, 0xFAFF},   Range{0xFE10, 0xFE19},   Range{0xFE30, 0xFE6F},   Range{0xFF00, 0xFF60},
    Range{0xFFE0, 0xFFE6},   Range{0x1F300, 0x1F64F}, Range{0x1F680, 0x1F6FF}, Range{0x1F900, 0x1F9FF},
    Range{0x20000, 0x3FFFD},
};

constexpr std::array combining{
    Range{0x0300, 0x036F}, Range{0x0483, 0x0489}, Range{0x0591, 0x05BD}, Range{0x064B, 0x065F}, Range{0x1AB0, 0x1AFF},
    Range{0x1DC0, 0x1DFF}, Range{0x20D0, 0x20FF}, Range{0x3099, 0x309A}, Range{0xFE00, 0xFE0F}, Range{0xFE20, 0xFE2F},
};

constexpr std::array harmful{
    Range{0x0000, 0x001F}, Range{0x007F, 0x009F}, Range{0x00AD, 0x00AD}, Range{0x061C, 0x061C}, Range{0x200B, 0x200F},
    Range{0x2028, 0x202E}, Range{0x2060, 0x206F}, Range{0xFEFF, 0xFEFF}, Range{0xFFF0, 0xFFFB}, Range{0xE0000, 0xE0FFF},
};

template <typename Ranges>
bool liesIn(const Ranges& ranges, char32_t code) {
    return std::ranges::any_of(ranges, [&](const Range& range) { return code >= range.first && code <= range.last; });
}

// How many bytes a first byte promises, and the bits it brings; no length for a byte that begins nothing.
struct Lead {
    std::size_t bytes;
    char32_t bits;
    char32_t smallest; // what a shorter form could not have said
};

std::optional<Lead> leadOf(unsigned char byte) {
    if (byte < 0x80) return Lead{1, byte, 0};
    if (byte >= 0xC2 && byte <= 0xDF) return Lead{2, byte & 0x1Fu, 0x80};
    if (byte >= 0xE0 && byte <= 0xEF) return Lead{3, byte & 0x0Fu, 0x800};
    if (byte >= 0xF0 && byte <= 0xF4) return Lead{4, byte & 0x07u, 0x10000};
    return std::nullopt;
}

// The character at the start of `text`; absent when the first byte begins no valid one.
std::optional<Character> firstOf(std::string_view text) {
    const auto lead = leadOf(static_cast<unsigned char>(text[0]));
    if (!lead || text.size() < lead->bytes) return std::nullopt;
    char32_t code = lead->bits;
    for (std::size_t i = 1; i < lead->bytes; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) != 0x80) return std::nullopt;
        code = code << 6 | (byte & 0x3Fu);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < lead->smallest || code > 0x10FFFF || surrogate) return std::nullopt;
    return Character{code, lead->bytes};
}

} // namespace

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto character = firstOf(text);
        const std::size_t bytes = character ? character->bytes : 1;
        if (!character) {
            result += "\uFFFD";
        } else if (liesIn(harmful, character->code)) {
            result += '?';
        } else {
            result += text.substr(0, bytes);
        }
        text.remove_prefix(bytes);
    }
    return result;
}

std::vector<Glyph> glyphsOf(std::string_view text) {
    std::vector<Glyph> glyphs;
    while (!text.empty()) {
        const auto character = firstOf(text);
        const std::size_t bytes = character ? character->bytes : 1;
        if (character && !glyphs.empty() && liesIn(combining, character->code)) {
            glyphs.back().text += text.substr(0, bytes);
        } else {
            const bool two = character && liesIn(wide, character->code);
            glyphs.push_back({std::string(text.substr(0, bytes)), two ? 2 : 1});
        }
        text.remove_prefix(bytes);
    }
    return glyphs;
}

int columnsOf(std::string_view text) {
    int columns = 0;
    for (const Glyph& glyph : glyphsOf(text))
        columns += glyph.columns;
    return columns;
}

std::string fitted(std::string_view text, int columns) {
    std::string result;
    int used = 0;
    for (const Glyph& glyph : glyphsOf(text)) {
        if (used + glyph.columns > columns) break;
        result += glyph.text;
        used += glyph.columns;
    }
    result.append(static_cast<std::size_t>(std::max(0, columns - used)), ' ');
    return result;
}

} // namespace lumbrine::remote
