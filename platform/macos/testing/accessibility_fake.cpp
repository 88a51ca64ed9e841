#include "platform/macos/autorelease_scope.h"
#include "platform/macos/testing/accessibility_calls.h"
#include "platform/macos/workspace.h"

#include <string_view>

namespace lumbrine {

namespace fakes {

namespace {

void called() {
    if (screen().openPools == 0) ++screen().callsOutsidePools;
}

AXError errorOf(const FakeElement& element, const std::string& name) {
    const auto found = element.errors.find(name);
    return found == element.errors.end() ? kAXErrorSuccess : found->second;
}

} // namespace

Screen& screen() {
    static Screen only;
    return only;
}

void newScreen() {
    for (const auto& [process, element] : screen().applications)
        CFRelease(element);
    screen() = Screen();
}

} // namespace fakes

std::optional<std::int32_t> findRunningApplication(std::string_view bundleIdentifier) {
    const auto found = fakes::screen().running.find(std::string(bundleIdentifier));
    if (found == fakes::screen().running.end()) return std::nullopt;
    return found->second;
}

void openAccessibilitySettings() {
    ++fakes::screen().settingsOpened;
}

} // namespace lumbrine

using namespace lumbrine::fakes;

FakeElement::FakeElement() : FakeCF(elementType) {}
FakeElement::~FakeElement() {
    for (const auto& [name, value] : attributes)
        if (value != nullptr) CFRelease(value);
}
void FakeElement::set(const std::string& name, CFTypeRef value) {
    attributes[name] = value;
}

const CFStringRef kAXTrustedCheckOptionPrompt = new FakeCFString(u"AXTrustedCheckOptionPrompt");

Boolean AXIsProcessTrusted() {
    called();
    return screen().trusted;
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
    called();
    if (!screen().trusted && flagIn(options, "AXTrustedCheckOptionPrompt")) ++screen().prompts;
    return screen().trusted;
}

CFTypeID AXUIElementGetTypeID() {
    return elementType;
}

AXUIElementRef AXUIElementCreateApplication(int processIdentifier) {
    called();
    const auto found = screen().applications.find(processIdentifier);
    if (found == screen().applications.end()) return new FakeElement();
    return static_cast<AXUIElementRef>(CFRetain(found->second));
}

AXUIElementRef AXUIElementCreateSystemWide() {
    called();
    auto* const all = new FakeElement();
    all->isSystemWide = true;
    return all;
}

AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float seconds) {
    called();
    if (element->isSystemWide) screen().messagingTimeout = seconds;
    return kAXErrorSuccess;
}

// As macOS does, in the place of an attribute that cannot be read there is a value that says why.
AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options, CFArrayRef* values) {
    called();
    ++screen().messages;
    if (element->error != kAXErrorSuccess) return element->error;
    std::vector<CFTypeRef> copied;
    for (const void* const attribute : attributes->values) {
        const std::string name = textOf(static_cast<CFStringRef>(attribute));
        const auto found = element->attributes.find(name);
        const bool isThere = errorOf(*element, name) == kAXErrorSuccess && found != element->attributes.end();
        if (!isThere && options != 0) return kAXErrorNoValue;
        copied.push_back(isThere && found->second != nullptr ? CFRetain(found->second) : new FakeCF(errorType));
    }
    *values = new FakeCFArray({copied.begin(), copied.end()});
    for (const CFTypeRef value : copied)
        CFRelease(value);
    return kAXErrorSuccess;
}

AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action) {
    called();
    const std::string name = textOf(action);
    screen().actions.push_back(name);
    return errorOf(*element, name);
}

void* objc_autoreleasePoolPush() {
    ++screen().openPools;
    return &screen();
}

void objc_autoreleasePoolPop(void*) {
    --screen().openPools;
}
