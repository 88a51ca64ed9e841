#include "simulator/short_name.h"

#include "base/utf8_clamp.h"

#include <algorithm>
#include <string>

namespace lumbrine {

namespace {

constexpr std::size_t width = blankDisplay.size();

bool isSmallVowel(char character) {
    return std::string_view("aeiou").contains(character);
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

std::string withoutVowels(std::string name) {
    if (name.size() <= width) return name;
    std::erase(name, ' ');
    for (std::size_t i = name.size(); i > 1 && name.size() > width; --i)
        if (isSmallVowel(name[i - 1])) name.erase(i - 1, 1);
    if (name.size() > width) name.erase(width - 1, name.size() - width);
    return name;
}

void dropTrailingBlanks(std::string& name) {
    while (!name.empty() && name.back() == ' ')
        name.pop_back();
}

std::string withoutNumberAndSide(std::string name) {
    dropTrailingBlanks(name);
    if (name.size() > 2 && name[name.size() - 2] == ' ' && (name.back() == 'L' || name.back() == 'R')) name.pop_back();
    while (name.size() > 1 && isDigit(name.back()))
        name.pop_back();
    dropTrailingBlanks(name);
    return name;
}

} // namespace

std::string asciiText(std::string_view text, NonASCIIRule nonASCII) {
    const char replacement = nonASCII == NonASCIIRule::blank ? ' ' : '?';
    std::string ascii;
    while (!text.empty()) {
        // The shortest whole character at the front: UTF-8 has at most four bytes in one.
        std::size_t length = 1;
        while (length < 4 && utf8Clamp(text, length).empty())
            ++length;
        const char character = text.front();
        ascii += length == 1 && character >= ' ' && character <= '~' ? character : replacement;
        text.remove_prefix(std::min(length, text.size()));
    }
    return ascii;
}

DisplayText shortName(std::string_view name, ShortNameRule rule, NonASCIIRule nonASCII) {
    std::string ascii = asciiText(name, nonASCII);
    if (rule == ShortNameRule::vowels) ascii = withoutVowels(std::move(ascii));
    if (rule == ShortNameRule::colliding) ascii = withoutNumberAndSide(std::move(ascii));

    DisplayText shown = blankDisplay;
    std::copy_n(ascii.begin(), std::min(ascii.size(), width), shown.begin());
    return shown;
}

} // namespace lumbrine
