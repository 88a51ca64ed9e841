#include "model/state/display_name.h"

#include "base/blank_text.h"
#include "base/utf8.h"

#include <algorithm>
#include <string>

namespace lumbrine {

namespace {

// Stands for any character that is not printable ASCII.
constexpr char other = '\0';

std::string shownCharacters(std::string_view name) {
    std::string characters;
    while (!name.empty()) {
        const std::size_t length = firstCharacter(name).length;
        const char character = name.front();
        characters += length == 1 && character >= ' ' && character <= '~' ? character : other;
        name.remove_prefix(length);
    }
    return characters;
}

bool mayStandFor(char shown, char character) {
    return shown == character || (shown == '?' && character == other);
}

constexpr std::size_t displayLength = 4;

// Shortening may leave out a number or a side at the end.
std::string_view withoutNumberAndSide(std::string_view name) {
    if (name.ends_with(" L") || name.ends_with(" R")) name.remove_suffix(1);
    name = name.substr(0, name.find_last_not_of("0123456789 ") + 1);
    return name;
}

} // namespace

bool mayShow(std::string_view display, std::string_view name) {
    const std::string characters(trimSpaces(shownCharacters(name)));
    if (isBlank(display)) {
        const bool beginsWithOther = !characters.empty() && characters.front() == other;
        const std::string_view kept = beginsWithOther ? withoutNumberAndSide(characters) : characters;
        const auto start = kept.substr(0, displayLength);
        return std::ranges::all_of(start, [](char character) { return character == other || character == ' '; });
    }
    if (characters.empty() || (characters.front() != other && characters.front() != display.front())) return false;
    std::size_t from = 0;
    for (const char shown : display) {
        if (shown == ' ') continue; // a blank of the name, or a character that is not ASCII
        while (from < characters.size() && !mayStandFor(shown, characters[from]))
            ++from;
        if (from++ >= characters.size()) return false;
    }
    return true;
}

} // namespace lumbrine
