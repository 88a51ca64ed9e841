// The screen where Pro Tools does not run.
#pragma once

#include "platform/api/accessibility.h"

namespace lumbrine {

// Never trusted, asked either way, and nothing is shown to the user. No application runs, every read and action fails.
class NoAccessibility final : public Accessibility {
public:
    bool isTrusted() override;
    bool isTrustedOrPrompt() override;
    std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) override;
    ElementHandle applicationElement(std::int32_t processIdentifier) override;
    std::optional<AttributeValue> attribute(const ElementHandle& element, std::string_view name) override;
    bool perform(const ElementHandle& element, std::string_view action) override;
};

} // namespace lumbrine
