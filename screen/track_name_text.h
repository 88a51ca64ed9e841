// Characters and blanks in a text that another program shows. Any bytes may come in.
#pragma once

#include <cstddef>
#include <string_view>

namespace lumbrine {

// Where the code point with this number begins, 0 being the first; the end of the text when it has fewer. A byte that
// starts none belongs to the one before.
std::size_t offsetOfCharacter(std::string_view text, std::size_t number);

// `text` without the tabs and the spaces, those of all writing systems, at its two ends. Ends of lines stay.
std::string_view trimmedOfBlanks(std::string_view text);

} // namespace lumbrine
