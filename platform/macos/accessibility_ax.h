// The screens of other programs by the Mac's Accessibility interface.
#pragma once

#include "platform/api/accessibility.h"
#include "platform/macos/screen_trust.h"

namespace lumbrine {

// Any thread, but for isTrustedOrPrompt, which is for the main thread.
class AccessibilityAX final : public Accessibility {
public:
    bool isTrusted() override;

    // Where the system says yes and yet refuses every read it shows nothing, so this opens the settings in its place.
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
