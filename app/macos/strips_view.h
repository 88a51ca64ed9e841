// The channel strips as the surfaces show them. For Objective-C++ alone.
#pragma once

#include "app/receiver_screen.h"

#import <AppKit/AppKit.h>

#include <string>
#include <vector>

NS_ASSUME_NONNULL_BEGIN

// Draws itself when what it shows has changed, and tells a screen reader each strip as an element of its own.
@interface LumbrineStripsView : NSView
- (void)show:(const std::vector<lumbrine::StripView>&)views named:(const std::string&)name;
@end

NS_ASSUME_NONNULL_END
