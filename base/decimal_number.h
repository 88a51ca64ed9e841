// Parses decimal numbers that a user has typed.
#pragma once

#include <optional>
#include <string_view>

namespace lumbrine {

// Accepts digits with an optional minus sign and an optional decimal point, such as "-0.72", independent of the locale.
// Absent for anything else, including blanks, an exponent, and a number that is too large for a double.
std::optional<double> decimalNumber(std::string_view word);

} // namespace lumbrine
