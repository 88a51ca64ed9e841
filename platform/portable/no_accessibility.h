// The accessibility interface for systems on which Pro Tools does not run.
#pragma once

#include "platform/api/accessibility.h"

namespace lumbrine {

// Never trusted, and shows the user nothing. Finds no application; every read is refused, every action fails.
class NoAccessibility final : public Accessibility {
public:
    bool isTrusted() override;
    bool isTrustedOrPrompt() override;
    std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) override;
    ElementHandle applicationElement(std::int32_t processIdentifier) override;
    std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
    attributes(const ElementHandle& element, std::span<const std::string_view> names) override;
    bool perform(const ElementHandle& element, std::string_view action) override;
};

} // namespace lumbrine
