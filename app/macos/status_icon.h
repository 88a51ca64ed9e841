// The icon in the menu bar and its menu. For Objective-C++ files only.
#pragma once

#include "app/macos/controls.h"
#include "app/receiver_app.h"

#import <AppKit/AppKit.h>

@interface LumbrineMenuOpening : NSObject <NSMenuDelegate>
- (nonnull instancetype)initWithOpening:(std::function<void()>)given;
@end

namespace lumbrine {

// Main thread. Must live until the program ends.
class StatusIcon {
public:
    // `target` gets the actions of the menu items; its owner must keep it alive.
    StatusIcon(ReceiverApp& app, LumbrineActionTarget* _Nonnull target);

    // Draws the current icon and menu, also while the menu is open.
    void draw();

private:
    ReceiverApp& app;
    NSStatusItem* const _Nonnull item = [NSStatusBar.systemStatusBar statusItemWithLength:NSSquareStatusItemLength];
    LumbrineMenuOpening* const _Nonnull opening;
    StatusMenu drawn{};
};

} // namespace lumbrine
