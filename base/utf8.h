// Whether bytes are UTF-8, and what to read in them when they are not quite.
#pragma once

#include <string>
#include <string_view>

namespace lumbrine {

// True when `text` is well-formed throughout: no overlong forms, no surrogates, nothing beyond U+10FFFF.
bool isUTF8(std::string_view text);

// `text` with U+FFFD in the place of each sequence that is not UTF-8: one for every start of a character that breaks
// off, and one for every byte that cannot start a character. The result is always UTF-8.
std::string repairedUTF8(std::string_view text);

} // namespace lumbrine
