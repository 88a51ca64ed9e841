// What a strip of four characters shows of a track's full name. Pure.
#pragma once

#include <string_view>

namespace lumbrine {

// Whether a strip may show a track of that full name as `display`, without blanks around it. How Pro Tools abbreviates
// is not known: it may cut names, leave out vowels, blanks and numbers, and show a blank or a question mark for what is
// not ASCII. But what it shows stands in the name in the same order, and a name that begins with ASCII keeps its first
// character.
bool mayShow(std::string_view display, std::string_view name);

} // namespace lumbrine
