// The four characters that a strip's display shows for a track.
#pragma once

#include "simulator/simulator_options.h"

#include <array>
#include <string>
#include <string_view>

namespace lumbrine {

using DisplayText = std::array<char, 4>; // printable ASCII and the characters of NonASCIIRule, padded with blanks

inline constexpr DisplayText blankDisplay{' ', ' ', ' ', ' '};

// Shortens a name to four characters by `rule`, and replaces each character that is not printable ASCII by `nonASCII`.
// A sequence that is not UTF-8 counts as one character.
DisplayText shortName(std::string_view name, ShortNameRule rule, NonASCIIRule nonASCII);

// The whole text in a form that a surface can show, with one character for each original one.
std::string asciiText(std::string_view text, NonASCIIRule nonASCII);

} // namespace lumbrine
