// UTF-8: its characters one by one, whether bytes are UTF-8, and what to do with bytes that are not.
//
// Well-formed means: no overlong forms, no surrogates, nothing beyond U+10FFFF. Everything that reads UTF-8 shares this
// one definition. All functions accept any bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

// A code point and the number of its bytes. Bytes that are not UTF-8 have no code point: either the start of a
// character that breaks off, or one byte that cannot start a character.
struct UTF8Character {
    std::optional<char32_t> code;
    std::size_t length; // at least 1
};

// `text` must not be empty.
UTF8Character firstCharacter(std::string_view text);

bool isUTF8(std::string_view text);

// `text` with one U+FFFD in the place of each sequence that is not UTF-8. The result is always UTF-8.
std::string repairedUTF8(std::string_view text);

// `text` on one line: each run of line breaks and other control characters becomes one blank. Otherwise like
// `repairedUTF8`.
std::string onOneLine(std::string_view text);

// The longest run of characters from the start of `text` that fits `maxBytes`. Stops at the first character that does
// not fit, even if a later, shorter one would. A sequence that is not UTF-8 counts as a character. The result is a part
// of `text`.
std::string_view utf8Clamp(std::string_view text, std::size_t maxBytes);

} // namespace lumbrine
