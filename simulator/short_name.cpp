#include "simulator/short_name.h"

#include "base/utf8.h"

#include <algorithm>
#include <array>
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

struct Accented {
    std::string_view letter;
    char code;
};

// The accented letters of a HUI whose codes are known.
constexpr std::array accentedLetters{Accented{"é", 0x0F}, Accented{"Ä", 0x15}, Accented{"ä", 0x16},
                                     Accented{"Ö", 0x17}, Accented{"ö", 0x18}, Accented{"Ü", 0x19},
                                     Accented{"ü", 0x1A}, Accented{"ß", 0x1D}};

char shownFor(std::string_view character, NonASCIIRule rule) {
    constexpr char block = 0x7F;
    if (rule == NonASCIIRule::blank) return ' ';
    if (rule == NonASCIIRule::questionMark) return '?';
    const auto* const found = std::ranges::find(accentedLetters, character, &Accented::letter);
    return found == accentedLetters.end() ? block : found->code;
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
    std::string ascii;
    while (!text.empty()) {
        const std::size_t length = firstCharacter(text).length;
        const char character = text.front();
        const std::string_view whole = text.substr(0, length);
        ascii += length == 1 && character >= ' ' && character <= '~' ? character : shownFor(whole, nonASCII);
        text.remove_prefix(whole.size());
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
