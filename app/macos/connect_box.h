// The box with a QR code and all addresses, for connecting a phone. For Objective-C++ files only.
#pragma once

#include "app/connect_text.h"

#import <AppKit/AppKit.h>

namespace lumbrine {

// Shows it as a sheet of the window and returns at once.
void showConnectBox(const ConnectText& text, NSWindow* _Nonnull window);

} // namespace lumbrine
