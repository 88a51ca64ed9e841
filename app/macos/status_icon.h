// The icon in the menu bar, and its menu. For Objective-C++ alone.
#pragma once

#include "app/macos/controls.h"
#include "app/receiver_app.h"

#import <AppKit/AppKit.h>

@interface LumbrineMenuOpening : NSObject <NSMenuDelegate>
- (nonnull instancetype)initWithOpening:(std::function<void()>)given;
@end

namespace lumbrine {

// Main thread. There until the program ends.
class StatusIcon {
public:
    // The owner keeps the target, which takes the items' actions.
    StatusIcon(ReceiverApp& receiverApp, LumbrineActionTarget* _Nonnull target);

    // Shows icon and menu as they are now, also while the menu is open.
    void draw();

private:
    ReceiverApp& app;
    NSStatusItem* const _Nonnull item = [NSStatusBar.systemStatusBar statusItemWithLength:NSSquareStatusItemLength];
    LumbrineMenuOpening* const _Nonnull opening;
    StatusMenu drawn{};
};

} // namespace lumbrine
