#include "blackbox/support/pseudonyms.h"

#include "blackbox/format.h"

#include <algorithm>

namespace lumbrine::blackbox {

namespace {

// The number of bytes of the character that begins so; 0 for none.
std::size_t lengthOf(unsigned char first) {
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first < 0xE0) return 2;
    if (first >= 0xE0 && first < 0xF0) return 3;
    if (first >= 0xF0 && first < 0xF5) return 4;
    return 0;
}

bool isWhole(std::string_view character) {
    return std::ranges::all_of(character.substr(1),
                               [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; });
}

char amongAll(std::uint64_t number, char first, unsigned count) {
    return static_cast<char>(first + static_cast<char>(number % count));
}

// `number` chooses among the characters of its kind.
std::string otherThan(std::string_view character, std::uint64_t number) {
    const char c = character[0];
    switch (character.size()) {
    case 1:
        if (c >= 'A' && c <= 'Z') return {amongAll(number, 'A', 26)};
        if (c >= 'a' && c <= 'z') return {amongAll(number, 'a', 26)};
        if (c >= '0' && c <= '9') return {amongAll(number, '0', 10)};
        return std::string(character);
    case 2:
        return {'\xC3', amongAll(number, '\xA0', 23)}; // à to ö
    case 3:
        return {'\xE3', '\x82', amongAll(number, '\xA2', 24)}; // katakana
    default:
        return {'\xF0', '\x9F', '\x8E', amongAll(number, '\xB5', 10)};
    }
}

} // namespace

std::uint64_t Pseudonyms::numberOf(std::string_view text) const {
    Checksum sum(seed);
    for (const char c : text)
        sum.add(static_cast<unsigned char>(c));
    sum.add(text.size());
    return sum.value();
}

std::string Pseudonyms::of(std::string_view name) const {
    Checksum sum(numberOf(name));
    std::string other;
    while (!name.empty()) {
        sum.add(other.size());
        const std::size_t length = lengthOf(static_cast<unsigned char>(name[0]));
        if (length == 0 || length > name.size() || !isWhole(name.substr(0, length))) {
            other += '?';
            name.remove_prefix(1);
        } else {
            other += otherThan(name.substr(0, length), sum.value() >> 8);
            name.remove_prefix(length);
        }
    }
    return other;
}

} // namespace lumbrine::blackbox
