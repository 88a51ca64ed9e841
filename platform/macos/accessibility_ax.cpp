#include "platform/macos/accessibility_ax.h"

#include "platform/macos/autorelease_scope.h"
#include "platform/macos/cf_text.h"
#include "platform/macos/workspace.h"

#include <ApplicationServices/ApplicationServices.h>

#include <array>
#include <utility>

namespace lumbrine {

namespace {

class AXElement final : public AccessibleElement {
public:
    explicit AXElement(CFHolder<AXUIElementRef> element) : held(std::move(element)) {}
    AXUIElementRef get() const { return held.get(); }

private:
    const CFHolder<AXUIElementRef> held;
};

AXUIElementRef systemElement(const ElementHandle& element) {
    return static_cast<const AXElement&>(*element).get();
}

bool isElement(CFTypeRef value) {
    return CFGetTypeID(value) == AXUIElementGetTypeID();
}

ElementHandle elementOf(CFTypeRef value) {
    return std::make_shared<AXElement>(CFHolder<AXUIElementRef>::sharing(static_cast<AXUIElementRef>(value)));
}

std::optional<AttributeValue> elementsOf(CFArrayRef array) {
    const CFIndex count = CFArrayGetCount(array);
    std::vector<ElementHandle> elements;
    elements.reserve(static_cast<std::size_t>(count));
    for (CFIndex i = 0; i < count; ++i) {
        const CFTypeRef value = CFArrayGetValueAtIndex(array, i);
        if (value == nullptr || !isElement(value)) return std::nullopt;
        elements.push_back(elementOf(value));
    }
    return elements;
}

std::optional<AttributeValue> valueOf(CFTypeRef value) {
    const CFTypeID type = CFGetTypeID(value);
    if (type == CFStringGetTypeID()) return utf8Of(static_cast<CFStringRef>(value));
    if (type == CFBooleanGetTypeID()) return static_cast<bool>(CFBooleanGetValue(static_cast<CFBooleanRef>(value)));
    if (type == CFArrayGetTypeID()) return elementsOf(static_cast<CFArrayRef>(value));
    if (isElement(value)) return elementOf(value);
    return std::nullopt;
}

bool askTheUser() {
    const std::array<const void*, 1> keys{kAXTrustedCheckOptionPrompt};
    const std::array<const void*, 1> values{kCFBooleanTrue};
    const auto options = CFHolder<CFDictionaryRef>::takingOver(CFDictionaryCreate(
        kCFAllocatorDefault, const_cast<const void**>(keys.data()), const_cast<const void**>(values.data()),
        static_cast<CFIndex>(keys.size()), &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    return AXIsProcessTrustedWithOptions(options.get());
}

} // namespace

bool AccessibilityAX::isTrusted() {
    const AutoreleaseScope scope;
    return trust.judge(AXIsProcessTrusted());
}

bool AccessibilityAX::isTrustedOrPrompt() {
    const AutoreleaseScope scope;
    const bool trusted = trust.judge(askTheUser());
    if (trust.isStale()) {
        openAccessibilitySettings();
        trust.userWasAsked();
    }
    return trusted;
}

std::optional<std::int32_t> AccessibilityAX::runningApplication(std::string_view bundleIdentifier) {
    return findRunningApplication(bundleIdentifier);
}

ElementHandle AccessibilityAX::applicationElement(std::int32_t processIdentifier) {
    const AutoreleaseScope scope;
    return std::make_shared<AXElement>(
        CFHolder<AXUIElementRef>::takingOver(AXUIElementCreateApplication(processIdentifier)));
}

bool AccessibilityAX::worked(std::int32_t error) {
    // Other errors, such as a missing attribute or a program that hangs, say nothing about trust.
    if (error == kAXErrorSuccess) trust.attempted(ScreenTrust::Outcome::allowed);
    if (error == kAXErrorAPIDisabled) trust.attempted(ScreenTrust::Outcome::refused);
    return error == kAXErrorSuccess;
}

std::optional<AttributeValue> AccessibilityAX::attribute(const ElementHandle& element, std::string_view name) {
    const AutoreleaseScope scope;
    const auto attributeName = cfString(name);
    if (!attributeName) return std::nullopt;
    CFTypeRef copied = nullptr;
    const AXError error = AXUIElementCopyAttributeValue(systemElement(element), attributeName.get(), &copied);
    const auto value = CFHolder<CFTypeRef>::takingOver(copied);
    if (!worked(error) || !value) return std::nullopt;
    return valueOf(value.get());
}

bool AccessibilityAX::perform(const ElementHandle& element, std::string_view action) {
    const AutoreleaseScope scope;
    const auto actionName = cfString(action);
    return actionName && worked(AXUIElementPerformAction(systemElement(element), actionName.get()));
}

} // namespace lumbrine
