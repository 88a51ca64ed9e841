#include "screen/track_name_text.h"

#include "base/utf8.h"

#include <algorithm>
#include <array>

namespace lumbrine {

namespace {

// The tab, and all characters of Unicode's category "space separator" (Zs).
constexpr std::array<std::string_view, 18> blanks{
    "\t",           " ",
    "\xC2\xA0",     "\xE1\x9A\x80",
    "\xE2\x80\x80", "\xE2\x80\x81",
    "\xE2\x80\x82", "\xE2\x80\x83",
    "\xE2\x80\x84", "\xE2\x80\x85",
    "\xE2\x80\x86", "\xE2\x80\x87",
    "\xE2\x80\x88", "\xE2\x80\x89",
    "\xE2\x80\x8A", "\xE2\x80\xAF",
    "\xE2\x81\x9F", "\xE3\x80\x80",
};

} // namespace

std::size_t offsetOfCharacter(std::string_view text, std::size_t number) {
    std::size_t offset = 0;
    for (; number > 0 && offset < text.size(); --number)
        offset += firstCharacter(text.substr(offset)).length;
    return offset;
}

std::string_view trimmedOfBlanks(std::string_view text) {
    const auto* const begin = blanks.begin();
    const auto* const end = blanks.end();
    for (const auto* blank = begin; blank != end;) {
        blank = std::find_if(begin, end, [&](std::string_view one) { return text.starts_with(one); });
        if (blank != end) text.remove_prefix(blank->size());
    }
    for (const auto* blank = begin; blank != end;) {
        blank = std::find_if(begin, end, [&](std::string_view one) { return text.ends_with(one); });
        if (blank != end) text.remove_suffix(blank->size());
    }
    return text;
}

} // namespace lumbrine
