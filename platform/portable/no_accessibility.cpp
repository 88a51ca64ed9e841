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

std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
NoAccessibility::attributes(const ElementHandle&, std::span<const std::string_view>) {
    return std::unexpected(ScreenFailure::refused);
}

bool NoAccessibility::perform(const ElementHandle&, std::string_view) {
    return false;
}

} // namespace lumbrine
