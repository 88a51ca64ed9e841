#include "tools/macos/screen_windows.h"

#include "platform/macos/foundation_text.h"
#include "tools/macos/screen_window.h"

#import <AppKit/AppKit.h>

#include <utility>
#include <vector>

// The target of a menu item.
@interface LumbrineScreenMenuItem : NSObject
@end

@implementation LumbrineScreenMenuItem {
    lumbrine::ScreenElement item;
    lumbrine::ScreenPress press;
}

- (instancetype)initWithItem:(const lumbrine::ScreenElement&)element press:(lumbrine::ScreenPress)action {
    self = [super init];
    if (self == nil) return nil;
    item = element;
    press = std::move(action);
    return self;
}

- (void)choose:(id)sender {
    press(item);
}
@end

namespace lumbrine {

struct ScreenWindows::Parts {
    ScreenPress press;
    std::vector<std::pair<ScreenElement, NSWindow*>> windows;
    NSMutableArray<LumbrineScreenMenuItem*>* items = [NSMutableArray array]; // a menu item does not keep its target

    NSMenu* menuOf(const ScreenNode& titled) {
        NSMenu* const menu = [[NSMenu alloc] initWithTitle:shownText(titled.title.value_or(""))];
        if (titled.children.empty()) return menu;
        for (const ScreenNode& entry : titled.children.front().children) {
            LumbrineScreenMenuItem* const target = [[LumbrineScreenMenuItem alloc] initWithItem:entry.element
                                                                                          press:press];
            [items addObject:target];
            [menu addItemWithTitle:shownText(entry.title.value_or("")) action:@selector(choose:) keyEquivalent:@""]
                .target = target;
        }
        return menu;
    }

    // The system itself makes the Apple menu.
    NSMenu* menuBar(const ScreenNode& application) {
        [items removeAllObjects];
        NSMenu* const bar = [[NSMenu alloc] init];
        const std::vector<const ScreenNode*> menus = menusIn(application);
        for (std::size_t i = 1; i < menus.size(); ++i) {
            NSMenu* const menu = menuOf(*menus[i]);
            [bar addItemWithTitle:menu.title action:nil keyEquivalent:@""].submenu = menu;
        }
        return bar;
    }

    void close(const ScreenElement& element) {
        std::erase_if(windows, [&](const auto& each) {
            if (each.first != element) return false;
            [each.second close];
            return true;
        });
    }

    void open(const ScreenNode& window) {
        NSWindow* const made = makeScreenWindow(window, press);
        windows.emplace_back(window.element, made);
        [made center];
        [made makeKeyAndOrderFront:nil];
    }

    void change(const ScreenNode& window) {
        for (const auto& [element, shown] : windows)
            if (element == window.element) showInWindow(shown, window);
    }
};

ScreenWindows::ScreenWindows(SimulatedProTools& proTools) : proTools(proTools), parts(std::make_unique<Parts>()) {
    parts->press = [this](const ScreenElement& element) {
        bool isPressed = false;
        this->proTools.actOnScreen(
            [&](SimulatedScreen& screen, TimePoint now) { isPressed = screen.press(element, now).has_value(); });
        return isPressed;
    };
}

ScreenWindows::~ScreenWindows() {
    for (const auto& [element, window] : parts->windows)
        [window close];
}

void ScreenWindows::look() {
    ScreenNode next = shown;
    proTools.lookAtScreen([&](SimulatedScreen& screen, TimePoint now) { next = outlineOf(screen, now); });
    if (next == shown) return;
    const bool isFirst = NSApp.mainMenu == nil || menusIn(shown).empty();
    const WindowChanges changes = windowChanges(shown, next);
    if (isFirst) NSApp.mainMenu = parts->menuBar(next);
    for (const ScreenElement& element : changes.closed)
        parts->close(element);
    for (const ScreenNode* window : changes.opened)
        parts->open(*window);
    for (const ScreenNode* window : changes.changed)
        parts->change(*window);
    shown = std::move(next);
}

} // namespace lumbrine
