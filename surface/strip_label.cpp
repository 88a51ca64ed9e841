#include "surface/strip_label.h"

#include <algorithm>

namespace lumbrine {

StripLabel::Text StripLabel::onDisplay(std::string_view text) {
    Text display = blank;
    std::ranges::copy(text.substr(0, display.size()), display.begin());
    return display;
}

void StripLabel::tell(std::string_view text, bool isName, std::uint64_t owner) {
    const auto number = static_cast<std::uint32_t>(owner);
    if (isName || told.load().owner != number) told = Told{.text = onDisplay(text), .owner = number};
}

bool StripLabel::show(std::string_view text, bool isName) {
    shown = onDisplay(text);
    if (!isName || shown == name) return false;
    name = shown;
    ++names;
    return true;
}

bool StripLabel::isKnownTo(HandsOwner owner) const {
    if (shown == blank) return true;
    const Told last = told;
    if (last.owner != static_cast<std::uint32_t>(owner.number)) return owner.isNewcomer;
    return last.text == shown || last.text == name;
}

} // namespace lumbrine
