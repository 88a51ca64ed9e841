// The delegate of the application object. For Objective-C++ files only.
#pragma once

#include "base/bilingual.h"

#import <AppKit/AppKit.h>

#include <functional>

NS_ASSUME_NONNULL_BEGIN

// Makes the program run without a Dock icon and keep running when its last window is closed.
@interface LumbrineApplicationDelegate : NSObject <NSApplicationDelegate, NSWindowDelegate>
@property std::function<void()> launched;      // the application is ready for its first window
@property std::function<void()> reopened;      // the user has opened the running program again
@property std::function<void()> windowChanged; // the window became visible or invisible
@property std::function<void()> ending;        // the process is about to end
@end

namespace lumbrine {

// A main menu that is never visible, because the program has no menu bar. It makes the usual key combinations work in
// the window.
NSMenu* keyMenu(const Bilingual& text);

} // namespace lumbrine

NS_ASSUME_NONNULL_END
