#include "base/utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace lumbrine {

namespace {

struct Sequence {
    std::size_t length;
    bool wellFormed;
};

// How many characters of one byte `text` begins with, at least.
std::size_t plainLength(std::string_view text) {
    constexpr std::uint64_t topBits = 0x8080808080808080;
    std::size_t length = 0;
    for (std::uint64_t eight = 0; text.size() - length >= sizeof eight; length += sizeof eight) {
        std::memcpy(&eight, text.data() + length, sizeof eight);
        if ((eight & topBits) != 0) break;
    }
    return length;
}

// `text` is not empty.
Sequence firstSequence(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t lead = byte(0);
    if (lead < 0x80) return {1, true};
    if (lead < 0xC2 || lead > 0xF4) return {1, false};
    const std::size_t announced = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    // After these leads the second byte alone tells overlong forms, surrogates and what is beyond the last character.
    int low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    int high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    std::size_t length = 1;
    while (length < announced && length < text.size() && byte(length) >= low && byte(length) <= high) {
        low = 0x80;
        high = 0xBF;
        ++length;
    }
    return {length, length == announced};
}

} // namespace

bool isUTF8(std::string_view text) {
    for (;;) {
        text.remove_prefix(plainLength(text));
        if (text.empty()) return true;
        const Sequence sequence = firstSequence(text);
        if (!sequence.wellFormed) return false;
        text.remove_prefix(sequence.length);
    }
}

std::string repairedUTF8(std::string_view text) {
    if (isUTF8(text)) return std::string(text);
    std::string repaired;
    repaired.reserve(text.size());
    while (!text.empty()) {
        const Sequence sequence = firstSequence(text);
        repaired += sequence.wellFormed ? text.substr(0, sequence.length) : "\xEF\xBF\xBD";
        text.remove_prefix(sequence.length);
    }
    return repaired;
}

} // namespace lumbrine
