// The four characters that a strip's display shows for a track.
#pragma once

#include "simulator/simulator_options.h"

#include <array>
#include <string>
#include <string_view>

namespace lumbrine {

using DisplayText = std::array<char, 4>; // printable ASCII and what NonASCIIRule puts there, filled up with blanks

inline constexpr DisplayText blankDisplay{' ', ' ', ' ', ' '};

// The first four characters of `text`, each character that is not printable ASCII replaced as the rule says. Malformed
// UTF-8 counts byte by byte.
DisplayText shortName(std::string_view name, ShortNameRule rule, NonASCIIRule nonASCII);

// The whole text as a surface can show it, one character for each of its characters.
std::string asciiText(std::string_view text, NonASCIIRule nonASCII);

} // namespace lumbrine
