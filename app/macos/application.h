// What the system's application object asks of this program. For Objective-C++ alone.
#pragma once

#include "base/bilingual.h"

#import <AppKit/AppKit.h>

#include <functional>

NS_ASSUME_NONNULL_BEGIN

// Without an icon in the Dock; goes on when its last window is closed.
@interface LumbrineApplicationDelegate : NSObject <NSApplicationDelegate, NSWindowDelegate>
@property std::function<void()> launched;      // all is ready for a first window
@property std::function<void()> reopened;      // the user has started the running program again
@property std::function<void()> windowChanged; // its window can be seen, or cannot any more
@end

namespace lumbrine {

// Never seen, since the program has no menu bar of its own; it makes the usual key combinations work in the window.
NSMenu* keyMenu(const Bilingual& text);

} // namespace lumbrine

NS_ASSUME_NONNULL_END
