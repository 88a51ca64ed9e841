// The main window. For Objective-C++ alone.
#pragma once

#include "app/macos/controls.h"
#include "app/macos/log_view.h"
#include "app/macos/strips_view.h"
#include "app/receiver_app.h"

#import <AppKit/AppKit.h>

namespace lumbrine {

// Main thread. Closing it hides it.
class ReceiverWindow {
public:
    // Not on the screen until it is shown. The owner keeps the target, which takes the buttons' actions.
    ReceiverWindow(ReceiverApp& receiverApp, LumbrineActionTarget* _Nonnull target);

    // Before all other windows, also those of other applications.
    void show();

    // Shows everything as it is now; nothing is done while no part of the window can be seen.
    void draw();

    NSWindow* _Nonnull window() const { return frame; }

private:
    void arrange(const ReceiverView& view, LumbrineActionTarget* _Nonnull target);
    NSView* _Nonnull noticeBox(const ScreenNotice& notice);
    void update();

    ReceiverApp& app;
    NSWindow* const _Nonnull frame;
    StatusRow proTools;
    StatusRow client;
    NSView* _Nullable notice = nil;
    NSTextField* const _Nonnull address = label({});
    LumbrineStripsView* const _Nonnull strips = [[LumbrineStripsView alloc] init];
    LogView log;
};

} // namespace lumbrine
