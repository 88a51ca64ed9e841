#include "base/decimal_number.h"

#include <cmath>

namespace lumbrine {

// Written by hand because strtod follows the locale and libc++ has no std::from_chars for double.
std::optional<double> decimalNumber(std::string_view word) {
    const bool negative = word.starts_with('-');
    if (negative) word.remove_prefix(1);
    double value = 0;
    double weight = 1;
    bool anyDigit = false;
    bool afterPoint = false;
    for (const char character : word) {
        if (character == '.' && !afterPoint) {
            afterPoint = true;
        } else if (character >= '0' && character <= '9') {
            anyDigit = true;
            value = value * 10 + (character - '0');
            if (afterPoint) weight *= 10;
        } else {
            return std::nullopt;
        }
    }
    value /= weight;
    if (!anyDigit || !std::isfinite(value)) return std::nullopt;
    return negative ? -value : value;
}

} // namespace lumbrine
