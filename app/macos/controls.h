// The small controls of the window. For Objective-C++ files only.
#pragma once

#include "app/receiver_screen.h"
#include "app/signal_colours.h"

#import <AppKit/AppKit.h>

#include <functional>
#include <string_view>

NS_ASSUME_NONNULL_BEGIN

// The target of buttons and menu items whose tag is a ScreenAction. Controls do not retain their target: its owner must
// keep it alive.
@interface LumbrineActionTarget : NSObject
- (instancetype)initWithPerform:(std::function<void(lumbrine::ScreenAction)>)given;
- (void)act:(id)sender;
@end

namespace lumbrine {

// A symbol of SF Symbols; nil when the system has none of this name.
NSImage* _Nullable symbolImage(std::string_view name);

NSColor* shownColor(RGBColor color);

// The colour that `choose` takes from those of the appearance, light or dark, in which it is drawn.
NSColor* signalColor(std::function<RGBColor(const SignalColours&)> choose);

NSTextField* label(const std::string& text);
void setText(NSTextField* field, const std::string& text); // an equal text is not set, which keeps the selection

NSButton* buttonFor(const ScreenButton& button, LumbrineActionTarget* target);

// The views side by side at the standard distance.
NSStackView* row(NSArray<NSView*>* views);

// A light, a title and a detail; one element for screen readers.
class StatusRow {
public:
    StatusRow();
    NSView* view() const { return stack; }
    void show(const StatusItem& item);

private:
    NSImageView* const light = [[NSImageView alloc] init];
    NSTextField* const title = label({});
    NSTextField* const detail = label({});
    NSStackView* const stack;
};

} // namespace lumbrine

NS_ASSUME_NONNULL_END
