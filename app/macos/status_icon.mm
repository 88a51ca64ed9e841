#include "app/macos/status_icon.h"

#include "platform/macos/foundation_text.h"

#include <utility>

@implementation LumbrineMenuOpening {
    std::function<void()> opening;
}

- (instancetype)initWithOpening:(std::function<void()>)given {
    self = [super init];
    if (self != nil) opening = std::move(given);
    return self;
}

- (void)menuNeedsUpdate:(NSMenu*)menu {
    opening();
}
@end

namespace lumbrine {

namespace {

NSMenuItem* makeItem(const MenuItem& item, LumbrineActionTarget* target) {
    if (item.kind == MenuItem::Kind::divider) return [NSMenuItem separatorItem];
    NSMenuItem* const made = [[NSMenuItem alloc] initWithTitle:@"" action:@selector(act:) keyEquivalent:@""];
    made.target = target;
    made.tag = static_cast<NSInteger>(item.action);
    return made;
}

void show(const MenuItem& item, NSMenuItem* shown) {
    if (item.kind == MenuItem::Kind::divider) return;
    shown.title = shownText(item.title);
    shown.enabled = item.enabled;
    shown.state = item.on ? NSControlStateValueOn : NSControlStateValueOff;
}

} // namespace

StatusIcon::StatusIcon(ReceiverApp& app, LumbrineActionTarget* target)
    : app(app), opening([[LumbrineMenuOpening alloc] initWithOpening:[this] { draw(); }]) {
    const StatusMenu now = app.menu();
    NSImage* const image = symbolImage(symbolName(now.symbol));
    [image setTemplate:YES];
    item.button.image = image;
    NSMenu* const menu = [[NSMenu alloc] init];
    menu.autoenablesItems = NO;
    menu.delegate = opening;
    for (const MenuItem& entry : now.items)
        [menu addItem:makeItem(entry, target)];
    item.menu = menu;
    draw();
}

// Setting a tooltip hides the visible one, even with equal text; so nothing is set unless something has changed.
void StatusIcon::draw() {
    StatusMenu now = app.menu();
    if (now == drawn) return;
    item.button.alphaValue = now.opacity;
    item.button.toolTip = shownText(now.spoken);
    item.button.accessibilityLabel = shownText(now.spoken);
    for (std::size_t i = 0; i < now.items.size(); ++i)
        show(now.items[i], [item.menu itemAtIndex:static_cast<NSInteger>(i)]);
    drawn = std::move(now);
}

} // namespace lumbrine
