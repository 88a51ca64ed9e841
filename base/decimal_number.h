// Numbers with a decimal point, as people type them.
#pragma once

#include <optional>
#include <string_view>

namespace lumbrine {

// A finite number with an optional minus sign and decimal point, "-0.72", in every locale; absent for anything else,
// also for blanks around it and for an exponent.
std::optional<double> decimalNumber(std::string_view word);

} // namespace lumbrine
