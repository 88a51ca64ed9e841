#include "model/hands/display_text.h"

#include "model/hands/automation_mode_text.h"

#include <algorithm>
#include <array>

namespace lumbrine {

namespace {

// Of hosts that do not tell the mode beside trim, and of newer modes, whose codes nobody knows.
constexpr std::array<std::string_view, 3> otherModes{"Trim", "T/L", "TT/L"};

bool isValue(std::string_view text) {
    std::string_view number = text;
    if (number.starts_with('+') || number.starts_with('-') || number.starts_with('<')) number.remove_prefix(1);
    if (number.ends_with('>')) number.remove_suffix(1);
    if (number.empty() || number.size() == text.size()) return false;
    return number == "oo" || number == "C" || number.find_first_not_of("0123456789.") == std::string_view::npos;
}

} // namespace

bool isNameOnDisplay(std::string_view text) {
    const bool isMode = parseAutoModeText(text) || std::ranges::find(otherModes, text) != otherModes.end();
    return !isMode && !isValue(text);
}

} // namespace lumbrine
