// Accessibility through the AXUIElement functions of macOS.
#pragma once

#include "platform/api/accessibility.h"
#include "platform/macos/screen_trust.h"

namespace lumbrine {

// Any thread, except isTrustedOrPrompt, which needs the main thread.
class AccessibilityAX final : public Accessibility {
public:
    bool isTrusted() override;

    // When macOS reports trust but refuses every read (see ScreenTrust), it shows no prompt. Then this opens the
    // settings instead.
    bool isTrustedOrPrompt() override;

    std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) override;
    ElementHandle applicationElement(std::int32_t processIdentifier) override;
    std::optional<AttributeValue> attribute(const ElementHandle& element, std::string_view name) override;
    bool perform(const ElementHandle& element, std::string_view action) override;

private:
    bool worked(std::int32_t error);

    ScreenTrust trust;
};

} // namespace lumbrine
