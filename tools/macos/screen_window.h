// One window of the simulated screen: its elements for Accessibility, and its texts as lines for people.
#pragma once

#include "simulator/screen_outline.h"

#import <AppKit/AppKit.h>

#include <functional>

namespace lumbrine {

// Presses an element; false when nothing there can be pressed.
using ScreenPress = std::function<bool(const ScreenElement&)>;

} // namespace lumbrine

@interface LumbrineScreenContent : NSView
- (instancetype)initWithPress:(lumbrine::ScreenPress)press;
- (void)show:(const lumbrine::ScreenNode&)window;
@end

namespace lumbrine {

// Its content view is a LumbrineScreenContent.
NSWindow* makeScreenWindow(const ScreenNode& window, const ScreenPress& press);
void showInWindow(NSWindow* shown, const ScreenNode& window);

} // namespace lumbrine
