#include "surface/strip_label.h"

#include <algorithm>

namespace lumbrine {

namespace {

constexpr std::uint32_t longestOwner = 0x7FFFFFFF;

// Far fewer owners than that come one after the other before a strip is told again.
constexpr std::uint32_t shortened(std::uint64_t owner) {
    return static_cast<std::uint32_t>(owner) & longestOwner;
}

} // namespace

StripLabel::Text StripLabel::onDisplay(std::string_view text) {
    Text display = blank;
    std::ranges::copy(text.substr(0, display.size()), display.begin());
    return display;
}

void StripLabel::tell(std::string_view text, bool isName, std::uint64_t owner) {
    const std::uint32_t number = shortened(owner);
    const Told before = told;
    if (isName || before.owner != number || before.text == blank || !before.isName)
        told = Told{.text = onDisplay(text), .owner = number & longestOwner, .isName = isName};
}

bool StripLabel::show(std::string_view text, bool isName) {
    shown = onDisplay(text);
    if (!isName || shown == name) return false;
    name = shown;
    ++names;
    return true;
}

bool StripLabel::isKnownTo(HandsOwner owner) const {
    return isNameKnownTo(owner) && !(name == blank && isOtherThanToldTo(owner));
}

bool StripLabel::isOtherThanToldTo(HandsOwner owner) const {
    const Told last = told;
    return last.owner == shortened(owner.number) && last.text != shown && shown != blank;
}

bool StripLabel::isNameKnownTo(HandsOwner owner) const {
    if (shown == blank) return true;
    const Told last = told;
    const bool isTold = last.owner == shortened(owner.number);
    if (owner.isNewcomer && !(isTold && last.isName)) return true;
    return isTold && (last.text == shown || last.text == name);
}

} // namespace lumbrine
