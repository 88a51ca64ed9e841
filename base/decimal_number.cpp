#include "base/decimal_number.h"

#include <cmath>

namespace lumbrine {

// By hand: of the standard library's readers one follows the locale, and libc++ does not have the other.
std::optional<double> decimalNumber(std::string_view word) {
    const bool negative = word.starts_with('-');
    if (negative) word.remove_prefix(1);
    double value = 0;
    double weight = 1;
    bool anyDigit = false;
    bool behindPoint = false;
    for (const char character : word) {
        if (character == '.' && !behindPoint) {
            behindPoint = true;
        } else if (character >= '0' && character <= '9') {
            anyDigit = true;
            value = value * 10 + (character - '0');
            if (behindPoint) weight *= 10;
        } else {
            return std::nullopt;
        }
    }
    value /= weight;
    if (!anyDigit || !std::isfinite(value)) return std::nullopt;
    return negative ? -value : value;
}

} // namespace lumbrine
