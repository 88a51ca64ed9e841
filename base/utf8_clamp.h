// Cutting text to a number of bytes without splitting a character.
#pragma once

#include <cstddef>
#include <string_view>

namespace lumbrine {

// The longest run of whole characters from the start of `text` that fits `maxBytes`. Stops at the first character that
// does not fit, even if a later, shorter one would. A byte that starts no valid character counts as a character by
// itself, so malformed text is cut too and never read past its end. The result is a part of `text`.
std::string_view utf8Clamp(std::string_view text, std::size_t maxBytes);

} // namespace lumbrine
