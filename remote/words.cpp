#include "remote/words.h"

#include <charconv>
#include <cmath>

namespace lumbrine::remote {

std::vector<std::string_view> wordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    while (true) {
        const std::size_t start = text.find_first_not_of(' ');
        if (start == std::string_view::npos) return words;
        text.remove_prefix(start);
        const std::size_t end = std::min(text.find(' '), text.size());
        words.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
}

std::optional<int> wholeNumber(std::string_view word, int smallest, int largest) {
    int value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc{} || end != word.data() + word.size()) return std::nullopt;
    if (value < smallest || value > largest) return std::nullopt;
    return value;
}

// By hand: of the library's own readers one follows the locale and the other is missing from some libraries.
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

} // namespace lumbrine::remote
