// The channel strips as the surfaces show them. For Objective-C++ files only.
#pragma once

#include "app/receiver_screen.h"

#import <AppKit/AppKit.h>

#include <string>
#include <vector>

NS_ASSUME_NONNULL_BEGIN

// Draws itself when its contents have changed. Each strip is a separate element for screen readers.
@interface LumbrineStripsView : NSView
- (void)show:(const std::vector<lumbrine::StripView>&)views named:(const std::string&)name;
@end

NS_ASSUME_NONNULL_END
