#include "tools/macos/screen_window.h"

#include "platform/macos/foundation_text.h"

#include <algorithm>
#include <vector>

namespace {

using lumbrine::ScreenElement;
using lumbrine::ScreenLine;
using lumbrine::ScreenNode;
using lumbrine::ScreenPress;
using lumbrine::shownText;

constexpr CGFloat lineHeight = 18;
constexpr CGFloat indent = 16;
constexpr CGFloat margin = 8;
constexpr CGFloat windowWidth = 420;
constexpr CGFloat windowHeight = 480;

NSString* keyOf(const ScreenElement& element) {
    return [NSString stringWithFormat:@"%d %d %d", static_cast<int>(element.kind), element.number, element.part];
}

} // namespace

@interface LumbrineScreenElement : NSAccessibilityElement
@end

@implementation LumbrineScreenElement {
    ScreenElement pressed;
    ScreenPress press;
}

- (instancetype)initWithElement:(const ScreenElement&)element press:(ScreenPress)action {
    self = [super init];
    if (self == nil) return nil;
    pressed = element;
    press = std::move(action);
    return self;
}

- (BOOL)accessibilityPerformPress {
    return press(pressed);
}
@end

@implementation LumbrineScreenContent {
    ScreenPress press;
    NSMutableDictionary<NSString*, LumbrineScreenElement*>* known;
    std::vector<ScreenLine> lines;
}

- (instancetype)initWithPress:(ScreenPress)action {
    self = [super initWithFrame:NSMakeRect(0, 0, windowWidth, windowHeight)];
    if (self == nil) return nil;
    press = std::move(action);
    known = [NSMutableDictionary dictionary];
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (NSRect)rectOfLine:(std::size_t)index {
    const CGFloat left = margin + indent * lines[index].depth;
    return NSMakeRect(left, margin + lineHeight * static_cast<CGFloat>(index), windowWidth - left, lineHeight);
}

- (NSArray*)elementsFor:(const std::vector<ScreenNode>&)nodes
                 inside:(id)parent
                   keep:(NSMutableDictionary<NSString*, LumbrineScreenElement*>*)kept {
    NSMutableArray* const elements = [NSMutableArray array];
    for (const ScreenNode& node : nodes) {
        NSString* const key = keyOf(node.element);
        LumbrineScreenElement* element = known[key];
        if (element == nil) element = [[LumbrineScreenElement alloc] initWithElement:node.element press:press];
        kept[key] = element;
        element.accessibilityParent = parent;
        element.accessibilityRole = shownText(node.role);
        if (node.title) element.accessibilityTitle = shownText(*node.title);
        if (node.description) element.accessibilityLabel = shownText(*node.description);
        if (node.text) element.accessibilityValue = shownText(*node.text);
        if (node.isOn) element.accessibilityValue = @(*node.isOn);
        if (node.isSelected) element.accessibilitySelected = *node.isSelected;
        element.accessibilityChildren = [self elementsFor:node.children inside:element keep:kept];
        [elements addObject:element];
    }
    return elements;
}

- (void)show:(const ScreenNode&)window {
    NSMutableDictionary<NSString*, LumbrineScreenElement*>* const kept = [NSMutableDictionary dictionary];
    self.accessibilityChildren = [self elementsFor:window.children inside:self keep:kept];
    known = kept; // the others are gone for other programs, too
    lines = lumbrine::linesOf(window);
    self.frameSize = NSMakeSize(windowWidth, 2 * margin + lineHeight * static_cast<CGFloat>(lines.size()));
    for (std::size_t i = 0; i < lines.size(); ++i)
        known[keyOf(lines[i].element)].accessibilityFrame =
            [self.window convertRectToScreen:[self convertRect:[self rectOfLine:i] toView:nil]];
    self.needsDisplay = YES;
}

- (void)drawRect:(NSRect)dirty {
    [NSColor.textBackgroundColor setFill];
    NSRectFill(dirty);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        NSColor* const ink = lines[i].isButton ? NSColor.linkColor : NSColor.textColor;
        [shownText(lines[i].text) drawInRect:[self rectOfLine:i]
                              withAttributes:@{
                                  NSFontAttributeName : [NSFont systemFontOfSize:NSFont.systemFontSize],
                                  NSForegroundColorAttributeName : ink,
                              }];
    }
}

- (void)mouseUp:(NSEvent*)event {
    const NSPoint place = [self convertPoint:event.locationInWindow fromView:nil];
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (lines[i].isButton && NSPointInRect(place, [self rectOfLine:i])) {
            const ScreenElement chosen = lines[i].element;
            press(chosen);
            return;
        }
}
@end

namespace lumbrine {

namespace {

LumbrineScreenContent* contentOf(NSWindow* window) {
    return static_cast<LumbrineScreenContent*>(window.contentView);
}

} // namespace

NSWindow* makeScreenWindow(const ScreenNode& window, const ScreenPress& press) {
    NSWindow* const made =
        [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, windowWidth, windowHeight)
                                    styleMask:NSWindowStyleMaskTitled | NSWindowStyleMaskMiniaturizable
                                      backing:NSBackingStoreBuffered
                                        defer:NO];
    made.releasedWhenClosed = NO;
    made.contentView = [[LumbrineScreenContent alloc] initWithPress:press];
    if (window.subrole) made.accessibilitySubrole = shownText(*window.subrole);
    showInWindow(made, window);
    return made;
}

void showInWindow(NSWindow* shown, const ScreenNode& window) {
    shown.title = shownText(window.title.value_or(""));
    [contentOf(shown) show:window];
}

} // namespace lumbrine
