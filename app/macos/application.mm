#include "app/macos/application.h"

#include "platform/macos/foundation_text.h"

#include <string>

@implementation LumbrineApplicationDelegate

- (void)applicationDidFinishLaunching:(NSNotification*)note {
    [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
    [NSApp activateIgnoringOtherApps:YES];
    self.launched();
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application {
    return NO;
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)application hasVisibleWindows:(BOOL)visible {
    self.reopened();
    return NO;
}

- (void)applicationWillTerminate:(NSNotification*)note {
    self.ending();
}

- (void)windowDidChangeOcclusionState:(NSNotification*)note {
    self.windowChanged();
}
@end

namespace lumbrine {

namespace {

void add(NSMenu* menu, const std::string& title, SEL action, NSString* key) {
    [menu addItemWithTitle:shownText(title) action:action keyEquivalent:key];
}

NSMenu* submenu(NSMenu* menu, const std::string& title) {
    NSMenu* const made = [[NSMenu alloc] initWithTitle:shownText(title)];
    [menu addItemWithTitle:made.title action:nil keyEquivalent:@""].submenu = made;
    return made;
}

} // namespace

NSMenu* keyMenu(const Bilingual& text) {
    NSMenu* const menu = [[NSMenu alloc] init];
    add(submenu(menu, "Lumbrine"), text("Quit", "終了"), @selector(terminate:), @"q");
    NSMenu* const edit = submenu(menu, text("Edit", "編集"));
    add(edit, text("Copy", "コピー"), @selector(copy:), @"c");
    add(edit, text("Select All", "すべてを選択"), @selector(selectAll:), @"a");
    NSMenu* const window = submenu(menu, text("Window", "ウィンドウ"));
    add(window, text("Minimize", "しまう"), @selector(performMiniaturize:), @"m");
    add(window, text("Close", "閉じる"), @selector(performClose:), @"w");
    return menu;
}

} // namespace lumbrine
