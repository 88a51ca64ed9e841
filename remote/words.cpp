#include "remote/words.h"

#include <array>
#include <charconv>
#include <cstdio>

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

std::string inWords(Duration duration) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%g s", inSeconds(duration));
    return text.data();
}

} // namespace lumbrine::remote
