// Texts that look the same, as the same bytes. Unicode writes "é" as one character or as "e" and an accent; a Mac has
// both. Comparing names by bytes needs one form.
#pragma once

#include <string>
#include <string_view>

namespace lumbrine {

// `text` with each Latin, Greek and Cyrillic accent, voicing mark of kana, and Korean letter put together with the
// character before it, where Unicode (form C) has one character for both. The few such pairs of other scripts, and
// marks that stand behind another mark that stays, are left alone. Accepts any bytes; those that are not UTF-8 stay as
// they are.
std::string composed(std::string_view text);

} // namespace lumbrine
