// The box with the version and what is running, and a report to copy. For Objective-C++ files only.
#pragma once

#include "app/about_text.h"

#import <AppKit/AppKit.h>

namespace lumbrine {

// Shows it as a sheet of the window and returns at once.
void showAboutBox(const AboutText& text, NSWindow* _Nonnull window);

} // namespace lumbrine
