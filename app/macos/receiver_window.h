// The main window. For Objective-C++ files only.
#pragma once

#include "app/macos/controls.h"
#include "app/macos/log_view.h"
#include "app/macos/set_up_box.h"
#include "app/macos/strips_view.h"
#include "app/receiver_app.h"

#import <AppKit/AppKit.h>

namespace lumbrine {

// Main thread. Closing the window hides it.
class ReceiverWindow {
public:
    // Shows nothing until `show`. `target` gets the actions of the buttons; its owner must keep it alive.
    ReceiverWindow(ReceiverApp& app, LumbrineActionTarget* _Nonnull target);

    // Shows the window in front of all others, also those of other applications.
    void show();

    // Draws the current contents. Does nothing while no part of the window is visible.
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
    SetUpBox setUp;
    NSTextField* const _Nonnull address = label({});
    NSTextField* const _Nonnull position = label({});
    LumbrineStripsView* const _Nonnull strips = [[LumbrineStripsView alloc] init];
    LogView log;
};

} // namespace lumbrine
