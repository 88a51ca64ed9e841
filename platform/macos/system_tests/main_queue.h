// For tests on a Mac: runs the main thread's event loop, and with it the main queue, until something has happened.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <functional>

namespace lumbrine {

// False when the condition does not hold within ten seconds. In another mode than the default, the loop does what it
// does while a menu is open or a window is resized.
inline bool runMainQueueUntil(const std::function<bool()>& condition, CFRunLoopMode mode = kCFRunLoopDefaultMode) {
    const CFAbsoluteTime end = CFAbsoluteTimeGetCurrent() + 10;
    while (!condition() && CFAbsoluteTimeGetCurrent() < end)
        CFRunLoopRunInMode(mode, 0.02, true);
    return condition();
}

} // namespace lumbrine
