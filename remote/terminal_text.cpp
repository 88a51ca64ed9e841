#include "remote/terminal_text.h"

#include "base/utf8.h"

#include <utf8proc.h>

#include <algorithm>

namespace lumbrine::remote {
namespace {

// Control and formatting characters, and separators of lines: they steer a terminal, or cannot be seen.
bool isHarmful(char32_t code) {
    switch (utf8proc_category(static_cast<utf8proc_int32_t>(code))) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
        return true;
    default:
        return false;
    }
}

int columnsOf(char32_t code) {
    return utf8proc_charwidth(static_cast<utf8proc_int32_t>(code));
}

} // namespace

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto [code, length] = firstCharacter(text);
        if (!code) {
            result += "\uFFFD";
        } else if (isHarmful(*code)) {
            result += '?';
        } else {
            result += text.substr(0, length);
        }
        text.remove_prefix(length);
    }
    return result;
}

std::vector<Glyph> glyphsOf(std::string_view text) {
    std::vector<Glyph> glyphs;
    while (!text.empty()) {
        const auto [code, length] = firstCharacter(text);
        const int columns = code ? columnsOf(*code) : 1;
        if (columns == 0 && !glyphs.empty()) {
            glyphs.back().text += text.substr(0, length);
        } else {
            glyphs.push_back({std::string(text.substr(0, length)), std::max(columns, 1)});
        }
        text.remove_prefix(length);
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
