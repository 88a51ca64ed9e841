// Characters and blanks in a text that another program shows. All functions accept any bytes.
#pragma once

#include <cstddef>
#include <string_view>

namespace lumbrine {

// The offset in bytes of code point `number`, counted from 0; the size of the text when it has fewer.
std::size_t offsetOfCharacter(std::string_view text, std::size_t number);

// `text` without tabs and Unicode spaces at both ends. Line ends stay.
std::string_view trimmedOfBlanks(std::string_view text);

} // namespace lumbrine
