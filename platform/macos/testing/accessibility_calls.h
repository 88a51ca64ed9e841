// For tests of the back end on other systems: a fake of the accessibility functions that it calls, with the state that
// a test sets and reads.
#pragma once

#include "platform/macos/testing/core_foundation_calls.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

using AXError = std::int32_t;
inline constexpr AXError kAXErrorSuccess = 0;
inline constexpr AXError kAXErrorCannotComplete = -25204;
inline constexpr AXError kAXErrorAPIDisabled = -25211;
inline constexpr AXError kAXErrorNoValue = -25212;
inline constexpr AXError kAXErrorInvalidUIElement = -25202;
enum AXCopyMultipleAttributeOptions : std::uint32_t { kAXCopyMultipleAttributeOptionStopOnError = 1 };

// An element of another program's window.
struct FakeElement : FakeCF {
    FakeElement();
    ~FakeElement() override;

    // Takes over the caller's reference to the value.
    void set(const std::string& name, CFTypeRef value);

    std::map<std::string, CFTypeRef> attributes;
    std::map<std::string, AXError> errors; // of attributes and actions
    AXError error = kAXErrorSuccess;       // of every message
    bool isSystemWide = false;
};
using AXUIElementRef = const FakeElement*;

extern "C" {
extern const CFStringRef kAXTrustedCheckOptionPrompt;

Boolean AXIsProcessTrusted();
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);
CFTypeID AXUIElementGetTypeID();
AXUIElementRef AXUIElementCreateApplication(int processIdentifier);
AXUIElementRef AXUIElementCreateSystemWide();
AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float seconds);
AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options, CFArrayRef* values);
AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action);
}

namespace lumbrine::fakes {

// The state of the fake. Each test begins with newScreen().
struct Screen {
    bool trusted = true;
    int prompts = 0;
    int settingsOpened = 0;
    std::vector<std::string> actions;
    int messages = 0;                            // that ask for attributes
    float messagingTimeout = 6;                  // of the whole process
    std::map<std::string, std::int32_t> running; // applications by bundle identifier
    std::map<int, FakeElement*> applications;    // by process identifier; the test owns the references
    int openPools = 0;                           // autorelease pools of the back end
    int callsOutsidePools = 0;
};
Screen& screen();
void newScreen();

} // namespace lumbrine::fakes
