#include "remote/short_words.h"

#include <array>
#include <cstdio>

namespace lumbrine::remote {

std::string panInShort(int position) {
    if (position == 0) return "·";
    if (position == 6) return "C";
    return position < 6 ? "<" + std::to_string(6 - position) : std::to_string(position - 6) + ">";
}

std::string autoModeInShort(AutoMode mode) {
    static constexpr std::array<const char*, 13> names{"·", "read", "tch", "ltch", "wrt",  "off", "",
                                                       "",  "",     "Trd", "Ttch", "Tlch", "Twrt"};
    return mode < names.size() ? names[mode] : "";
}

Ink inkOf(AutoMode mode) {
    const int kind = mode & 7;
    if (kind == 1) return Ink::green;
    return kind >= 2 && kind <= 4 ? Ink::red : Ink::plain;
}

std::string faderInShort(double unit) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%.1f", unit * 100);
    return text.data();
}

} // namespace lumbrine::remote
