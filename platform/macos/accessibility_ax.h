// Accessibility through the AXUIElement functions of macOS.
#pragma once

#include "platform/api/accessibility.h"

#include <atomic>

namespace lumbrine {

// Any thread, except isTrustedOrPrompt, which needs the main thread.
class AccessibilityAX final : public Accessibility {
public:
    // Sets how long this process waits for the answer to any accessibility message.
    AccessibilityAX();

    bool isTrusted() override;

    // The system's answer may be stale: after a program that the user has allowed is replaced by another build, macOS
    // may still report trust but refuse every read, and then it shows no prompt. When the last message was refused,
    // this opens the settings instead.
    bool isTrustedOrPrompt() override;

    std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) override;
    ElementHandle applicationElement(std::int32_t processIdentifier) override;
    std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
    attributes(const ElementHandle& element, std::span<const std::string_view> names) override;
    bool perform(const ElementHandle& element, std::string_view action) override;

private:
    bool worked(std::int32_t error);

    std::atomic<bool> wasRefused{false}; // the last message
};

} // namespace lumbrine
