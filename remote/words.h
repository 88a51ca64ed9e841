// The words of a line and the numbers in them.
#pragma once

#include "platform/api/time.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::remote {

// Splits a text at blanks. The words are views into `text`.
std::vector<std::string_view> wordsOf(std::string_view text);

// A decimal whole number within the range. Absent for anything else, including blanks around it.
std::optional<int> wholeNumber(std::string_view word, int smallest, int largest);

// "2 s", "0.5 s".
std::string inWords(Duration duration);

} // namespace lumbrine::remote
