// The small pieces that the window is made of. For Objective-C++ alone.
#pragma once

#include "app/receiver_screen.h"

#import <AppKit/AppKit.h>

#include <functional>
#include <string_view>

NS_ASSUME_NONNULL_BEGIN

// The target of buttons and menu items whose tag is a ScreenAction. Controls do not keep their target, so the owner
// does.
@interface LumbrineActionTarget : NSObject
- (instancetype)initWithPerform:(std::function<void(lumbrine::ScreenAction)>)given;
- (void)act:(id)sender;
@end

namespace lumbrine {

// One of the system's symbols; nil where the system has none of that name.
NSImage* _Nullable symbolImage(std::string_view name);

NSTextField* label(const std::string& text);
void setText(NSTextField* field, const std::string& text); // leaves an equal text alone, and what is selected in it

NSButton* buttonFor(const ScreenButton& button, LumbrineActionTarget* target);

// Side by side, with the usual distance.
NSStackView* row(NSArray<NSView*>* views);

// A light, a title and a detail, told by a screen reader as one.
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
