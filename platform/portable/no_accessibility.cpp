#include "platform/portable/no_accessibility.h"

namespace lumbrine {

bool NoAccessibility::isTrusted() {
    return false;
}

bool NoAccessibility::isTrustedOrPrompt() {
    return false;
}

std::optional<std::int32_t> NoAccessibility::runningApplication(std::string_view) {
    return std::nullopt;
}

ElementHandle NoAccessibility::applicationElement(std::int32_t) {
    return std::make_shared<const AccessibleElement>();
}

std::optional<AttributeValue> NoAccessibility::attribute(const ElementHandle&, std::string_view) {
    return std::nullopt;
}

bool NoAccessibility::perform(const ElementHandle&, std::string_view) {
    return false;
}

} // namespace lumbrine
