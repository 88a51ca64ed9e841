#include "remote/expectation.h"

#include "base/decimal_number.h"
#include "remote/words.h"

#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <span>

namespace lumbrine::remote {
namespace {

constexpr double nearby = 0.005 + 1e-9;

// Matches * and ? as in file names. It backtracks to the last * only, so the time is at most the product of the
// lengths.
bool globFits(std::string_view pattern, std::string_view text) {
    std::size_t p = 0;
    std::size_t t = 0;
    std::optional<std::size_t> star;
    std::size_t resumeAt = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            resumeAt = t;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (star) {
            p = *star + 1;
            t = ++resumeAt;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

struct Comparison {
    std::string_view sign;
    bool (*holds)(double actual, double limit);
};

// Longer signs come first, because "<" is a prefix of "<=".
constexpr std::array comparisons{
    Comparison{"~", [](double actual, double limit) { return std::abs(actual - limit) <= nearby; }},
    Comparison{"<=", [](double actual, double limit) { return actual <= limit; }},
    Comparison{">=", [](double actual, double limit) { return actual >= limit; }},
    Comparison{"<", [](double actual, double limit) { return actual < limit; }},
    Comparison{">", [](double actual, double limit) { return actual > limit; }},
};

const Comparison* comparisonOf(std::string_view word) {
    for (const Comparison& comparison : comparisons)
        if (word.starts_with(comparison.sign)) return &comparison;
    return nullptr;
}

bool valueFits(std::string_view pattern, std::string_view value) {
    const Comparison* comparison = comparisonOf(pattern);
    if (comparison == nullptr) return globFits(pattern, value);
    const auto limit = decimalNumber(pattern.substr(comparison->sign.size()));
    const auto actual = decimalNumber(value);
    return limit && actual && comparison->holds(*actual, *limit);
}

// The end of the key in "key=value"; absent for a word without key. A comparison ("<=3") has no key.
std::optional<std::size_t> keyEnd(std::string_view word) {
    const std::size_t equals = word.find('=');
    if (equals == std::string_view::npos || equals == 0 || comparisonOf(word) != nullptr) return std::nullopt;
    return equals;
}

std::string_view valueOf(std::string_view word) {
    const auto end = keyEnd(word);
    return end ? word.substr(*end + 1) : word;
}

bool wordFits(std::string_view pattern, std::string_view word) {
    const auto end = keyEnd(pattern);
    if (!end) return valueFits(pattern, word);
    if (!word.starts_with(pattern.substr(0, *end + 1))) return false;
    return valueFits(pattern.substr(*end + 1), word.substr(*end + 1));
}

bool wordsFit(std::span<const std::string> pattern, std::span<const std::string_view> line) {
    for (const std::string& word : pattern) {
        if (keyEnd(word)) {
            while (!line.empty() && !wordFits(word, line.front()))
                line = line.subspan(1);
        }
        if (line.empty() || !wordFits(word, line.front())) return false;
        line = line.subspan(1);
    }
    return true;
}

} // namespace

Expectation::Expectation(std::string_view text) : pattern(text) {
    for (const std::string_view word : wordsOf(text))
        words.emplace_back(word);
}

std::expected<Expectation, std::string> Expectation::of(std::string_view pattern) {
    Expectation expectation(pattern);
    if (expectation.words.empty()) return std::unexpected("an empty expectation");
    for (const std::string& word : expectation.words) {
        const std::string_view value = valueOf(word);
        const Comparison* comparison = comparisonOf(value);
        if (comparison != nullptr && !decimalNumber(value.substr(comparison->sign.size())))
            return std::unexpected("\"" + word + "\" compares with something that is no number");
    }
    return expectation;
}

bool Expectation::fits(std::string_view line) const {
    return wordsFit(words, wordsOf(line));
}

} // namespace lumbrine::remote
