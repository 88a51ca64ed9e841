#include "app/macos/strips_view.h"

#include "app/light_colours.h"
#include "app/macos/controls.h"
#include "platform/macos/foundation_text.h"

namespace {

using lumbrine::shownColor;
using lumbrine::shownText;
using lumbrine::StripView;

constexpr CGFloat usualHeight = 150;
constexpr CGFloat leastHeight = 96;
constexpr CGFloat gap = 3;
constexpr CGFloat corner = 4;
constexpr CGFloat bandHeight = 4;
constexpr CGFloat nameTop = 8;
constexpr CGFloat lightsTop = 24;
constexpr CGFloat lightHeight = 13;
constexpr CGFloat railTop = 46;
constexpr CGFloat railBottom = 10;
constexpr CGFloat capHeight = 8;

void fill(NSRect rect, CGFloat radius, NSColor* color) {
    [color setFill];
    [[NSBezierPath bezierPathWithRoundedRect:rect xRadius:radius yRadius:radius] fill];
}

void drawText(const std::string& text, NSRect within, NSColor* color, NSFontWeight weight) {
    NSMutableParagraphStyle* const centred = [[NSMutableParagraphStyle alloc] init];
    centred.alignment = NSTextAlignmentCenter;
    centred.lineBreakMode = NSLineBreakByClipping; // at this width "…" would cost a letter
    [shownText(text) drawInRect:within
                 withAttributes:@{
                     NSFontAttributeName : [NSFont systemFontOfSize:10 weight:weight],
                     NSForegroundColorAttributeName : color,
                     NSParagraphStyleAttributeName : centred,
                 }];
}

void drawLight(const char* letter, bool on, NSRect where, lumbrine::RGBColor color) {
    if (on) fill(where, 2, shownColor(color));
    drawText(letter, where, on ? shownColor(lumbrine::letterOnLight) : NSColor.secondaryLabelColor, NSFontWeightBold);
}

void drawFader(double value, NSRect column) {
    const CGFloat top = NSMinY(column) + railTop;
    const CGFloat bottom = NSMaxY(column) - railBottom;
    fill(NSMakeRect(NSMidX(column) - 1, top, 2, bottom - top), 1, NSColor.separatorColor);
    const CGFloat middle = bottom - capHeight / 2 - value * (bottom - top - capHeight);
    fill(NSMakeRect(NSMinX(column) + 4, middle - capHeight / 2, NSWidth(column) - 8, capHeight), 2,
         NSColor.secondaryLabelColor);
}

void drawStrip(const StripView& strip, NSRect column) {
    fill(column, corner, strip.select ? NSColor.selectedContentBackgroundColor : NSColor.controlBackgroundColor);
    if (strip.color)
        fill(NSMakeRect(NSMinX(column), NSMinY(column), NSWidth(column), bandHeight), 2, shownColor(*strip.color));
    NSColor* const ink = strip.select ? NSColor.alternateSelectedControlTextColor : NSColor.labelColor;
    drawText(strip.shownName(), NSMakeRect(NSMinX(column), NSMinY(column) + nameTop, NSWidth(column), 14), ink,
             NSFontWeightMedium);
    const CGFloat half = NSWidth(column) / 2;
    const CGFloat top = NSMinY(column) + lightsTop;
    drawLight("M", strip.mute, NSMakeRect(NSMinX(column) + 1, top, half - 2, lightHeight), lumbrine::muteLight);
    drawLight("S", strip.solo, NSMakeRect(NSMinX(column) + half + 1, top, half - 2, lightHeight), lumbrine::soloLight);
    drawFader(strip.fader, column);
}

} // namespace

@implementation LumbrineStripsView {
    std::vector<StripView> strips;
    NSArray<NSAccessibilityElement*>* spoken;
}

- (instancetype)initWithFrame:(NSRect)frame {
    self = [super initWithFrame:frame];
    if (self == nil) return nil;
    spoken = @[];
    self.accessibilityElement = YES;
    self.accessibilityRole = NSAccessibilityGroupRole;
    [self.heightAnchor constraintGreaterThanOrEqualToConstant:leastHeight].active = YES;
    [self setContentCompressionResistancePriority:NSLayoutPriorityDefaultLow
                                   forOrientation:NSLayoutConstraintOrientationVertical];
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (NSSize)intrinsicContentSize {
    return NSMakeSize(NSViewNoIntrinsicMetric, usualHeight);
}

- (NSRect)columnOf:(std::size_t)index {
    const CGFloat width = NSWidth(self.bounds) / static_cast<CGFloat>(strips.size());
    const NSRect whole = NSMakeRect(width * static_cast<CGFloat>(index), 0, width, NSHeight(self.bounds));
    return NSInsetRect(whole, gap / 2, 0);
}

- (void)show:(const std::vector<StripView>&)views named:(const std::string&)name {
    self.accessibilityLabel = shownText(name);
    if (views == strips) return;
    const bool isRearranged = views.size() != strips.size();
    strips = views;
    self.needsDisplay = YES;
    NSMutableArray<NSAccessibilityElement*>* const elements = [NSMutableArray array];
    for (std::size_t i = 0; i < strips.size(); ++i) {
        NSAccessibilityElement* const element = i < spoken.count ? spoken[i] : [[NSAccessibilityElement alloc] init];
        element.accessibilityRole = NSAccessibilityStaticTextRole;
        element.accessibilityParent = self;
        element.accessibilityValue = shownText(strips[i].spoken);
        element.accessibilityFrameInParentSpace = [self columnOf:i];
        [elements addObject:element];
    }
    spoken = elements;
    if (isRearranged) NSAccessibilityPostNotification(self, NSAccessibilityLayoutChangedNotification);
}

- (NSArray*)accessibilityChildren {
    return spoken;
}

- (void)setFrameSize:(NSSize)size {
    [super setFrameSize:size];
    for (std::size_t i = 0; i < spoken.count; ++i)
        spoken[i].accessibilityFrameInParentSpace = [self columnOf:i];
}

- (void)drawRect:(NSRect)dirty {
    for (std::size_t i = 0; i < strips.size(); ++i)
        if (NSIntersectsRect([self columnOf:i], dirty)) drawStrip(strips[i], [self columnOf:i]);
}
@end
