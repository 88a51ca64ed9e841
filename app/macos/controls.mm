#include "app/macos/controls.h"

#include "platform/macos/foundation_text.h"

#include <utility>

@implementation LumbrineActionTarget {
    std::function<void(lumbrine::ScreenAction)> perform;
}

- (instancetype)initWithPerform:(std::function<void(lumbrine::ScreenAction)>)given {
    self = [super init];
    if (self != nil) perform = std::move(given);
    return self;
}

- (void)act:(id)sender {
    perform(static_cast<lumbrine::ScreenAction>([sender tag]));
}
@end

namespace lumbrine {

namespace {

constexpr CGFloat distance = 8;

} // namespace

NSImage* symbolImage(std::string_view name) {
    return [NSImage imageWithSystemSymbolName:shownText(name) accessibilityDescription:nil];
}

NSColor* shownColor(RGBColor color) {
    const auto share = [](std::uint8_t part) { return static_cast<CGFloat>(part) / 255; };
    return [NSColor colorWithSRGBRed:share(color.red()) green:share(color.green()) blue:share(color.blue()) alpha:1];
}

NSColor* signalColor(std::function<RGBColor(const SignalColours&)> choose) {
    return [NSColor
          colorWithName:nil
        dynamicProvider:^(NSAppearance* appearance) {
          NSAppearanceName const name =
              [appearance bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
          return shownColor(choose([name isEqualToString:NSAppearanceNameDarkAqua] ? darkSignals : lightSignals));
        }];
}

NSTextField* label(const std::string& text) {
    return [NSTextField labelWithString:shownText(text)];
}

void setText(NSTextField* field, const std::string& text) {
    NSString* const wanted = shownText(text);
    if (![field.stringValue isEqualToString:wanted]) field.stringValue = wanted;
}

NSButton* buttonFor(const ScreenButton& button, LumbrineActionTarget* target) {
    NSImage* const image = symbolImage(symbolName(button.symbol));
    NSButton* const made = [NSButton buttonWithTitle:shownText(button.title) target:target action:@selector(act:)];
    made.image = image;
    made.imagePosition = button.title.empty() ? NSImageOnly : NSImageLeading;
    made.tag = static_cast<NSInteger>(button.action);
    if (!button.help.empty()) made.toolTip = shownText(button.help);
    if (button.title.empty()) made.accessibilityLabel = shownText(button.help);
    return made;
}

NSStackView* row(NSArray<NSView*>* views) {
    NSStackView* const stack = [NSStackView stackViewWithViews:views];
    stack.orientation = NSUserInterfaceLayoutOrientationHorizontal;
    stack.alignment = NSLayoutAttributeCenterY;
    stack.spacing = distance;
    return stack;
}

StatusRow::StatusRow() : stack(row(@[ light, title, detail ])) {
    title.font = [NSFont systemFontOfSize:NSFont.systemFontSize weight:NSFontWeightSemibold];
    detail.textColor = NSColor.secondaryLabelColor;
    detail.lineBreakMode = NSLineBreakByTruncatingTail;
    [detail setContentCompressionResistancePriority:NSLayoutPriorityDefaultLow
                                     forOrientation:NSLayoutConstraintOrientationHorizontal];
    for (NSView* part in stack.views)
        part.accessibilityElement = NO;
    stack.accessibilityElement = YES;
    stack.accessibilityRole = NSAccessibilityStaticTextRole;
}

// The light differs in shape (full or empty) as well as in colour, for users who cannot see the colour.
void StatusRow::show(const StatusItem& item) {
    light.image = symbolImage(item.ok ? "circle.fill" : "circle");
    light.contentTintColor = item.ok ? NSColor.systemGreenColor : NSColor.tertiaryLabelColor;
    setText(title, item.title);
    setText(detail, item.detail);
    stack.accessibilityValue = shownText(item.title + ": " + item.detail);
}

} // namespace lumbrine
