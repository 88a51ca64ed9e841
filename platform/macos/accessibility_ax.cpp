#include "platform/macos/accessibility_ax.h"

#include "platform/macos/autorelease_scope.h"
#include "platform/macos/cf_text.h"
#include "platform/macos/workspace.h"

#include <ApplicationServices/ApplicationServices.h>

#include <algorithm>
#include <array>
#include <chrono>
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

// With options, one attribute that cannot be read would cost all others.
constexpr AXCopyMultipleAttributeOptions noOptions{};

bool askTheUser() {
    const std::array<const void*, 1> keys{kAXTrustedCheckOptionPrompt};
    const std::array<const void*, 1> values{kCFBooleanTrue};
    const auto options = CFHolder<CFDictionaryRef>::takingOver(CFDictionaryCreate(
        kCFAllocatorDefault, const_cast<const void**>(keys.data()), const_cast<const void**>(values.data()),
        static_cast<CFIndex>(keys.size()), &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    return AXIsProcessTrustedWithOptions(options.get());
}

} // namespace

AccessibilityAX::AccessibilityAX() {
    const AutoreleaseScope scope;
    // A time that is set for one element holds for that element alone; this one holds for all.
    const auto all = CFHolder<AXUIElementRef>::takingOver(AXUIElementCreateSystemWide());
    AXUIElementSetMessagingTimeout(all.get(), std::chrono::duration<float>(answerTime).count());
}

bool AccessibilityAX::isTrusted() {
    const AutoreleaseScope scope;
    return AXIsProcessTrusted();
}

bool AccessibilityAX::isTrustedOrPrompt() {
    const AutoreleaseScope scope;
    const bool trusted = askTheUser();
    if (wasRefused.exchange(false) && trusted) openAccessibilitySettings();
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
    // Other errors, such as a missing element or a program that hangs, say nothing about trust.
    if (error == kAXErrorSuccess) wasRefused = false;
    if (error == kAXErrorAPIDisabled) wasRefused = true;
    return error == kAXErrorSuccess;
}

std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
AccessibilityAX::attributes(const ElementHandle& element, std::span<const std::string_view> names) {
    const AutoreleaseScope scope;
    std::vector<std::optional<AttributeValue>> values(names.size());
    const CFHolder<CFArrayRef> wanted = cfStrings(names);
    if (!wanted) return values;
    CFArrayRef copied = nullptr;
    const AXError error =
        AXUIElementCopyMultipleAttributeValues(systemElement(element), wanted.get(), noOptions, &copied);
    const auto answer = CFHolder<CFArrayRef>::takingOver(copied);
    const bool isAnswered = worked(error);
    if (error == kAXErrorCannotComplete) return std::unexpected(ScreenFailure::noAnswer);
    if (error == kAXErrorAPIDisabled) return std::unexpected(ScreenFailure::refused);
    if (!isAnswered || !answer) return values;
    const auto count = std::min(values.size(), static_cast<std::size_t>(CFArrayGetCount(answer.get())));
    for (std::size_t i = 0; i < count; ++i) // in the place of one that cannot be read there is an error, as a value
        if (const CFTypeRef value = CFArrayGetValueAtIndex(answer.get(), static_cast<CFIndex>(i)))
            values[i] = valueOf(value);
    return values;
}

bool AccessibilityAX::perform(const ElementHandle& element, std::string_view action) {
    const AutoreleaseScope scope;
    const auto actionName = cfString(action);
    return actionName && worked(AXUIElementPerformAction(systemElement(element), actionName.get()));
}

} // namespace lumbrine
