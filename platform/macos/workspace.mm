#include "platform/macos/workspace.h"

#include "platform/macos/foundation_text.h"

#import <AppKit/AppKit.h>

namespace lumbrine {

std::optional<std::int32_t> findRunningApplication(std::string_view bundleIdentifier) {
    @autoreleasepool {
        NSString* const identifier = nsString(bundleIdentifier);
        if (identifier == nil) return std::nullopt;
        NSRunningApplication* const first =
            [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier].firstObject;
        if (first == nil || first.processIdentifier <= 0) return std::nullopt;
        return first.processIdentifier;
    }
}

void openAccessibilitySettings() {
    @autoreleasepool {
        NSString* const page = @"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";
        [NSWorkspace.sharedWorkspace openURL:(NSURL* _Nonnull)[NSURL URLWithString:page]];
    }
}

} // namespace lumbrine
