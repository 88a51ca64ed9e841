// Blanks around and instead of text, as displays are padded with them.
#pragma once

#include <string_view>

namespace lumbrine {

// Nothing but spaces and tabs.
constexpr bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t") == std::string_view::npos;
}

// Without spaces at either end.
constexpr std::string_view trimSpaces(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace lumbrine
