// The words of a line and the numbers in them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace lumbrine::remote {

// What stands between blanks. The words are parts of `text`.
std::vector<std::string_view> wordsOf(std::string_view text);

// A whole number in decimal that lies in the range; absent for anything else, also for blanks around it.
std::optional<int> wholeNumber(std::string_view word, int smallest, int largest);

} // namespace lumbrine::remote
