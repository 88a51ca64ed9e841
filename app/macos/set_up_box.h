// The card of the first set-up in the window. For Objective-C++ files only.
#pragma once

#include "app/macos/controls.h"
#include "app/set_up_card.h"

#import <AppKit/AppKit.h>

#include <vector>

namespace lumbrine {

// Four rows with a mark each, and what to do next.
class SetUpBox {
public:
    SetUpBox();

    NSView* _Nonnull view() const { return stack; }
    void show(const SetUpCard& card);

private:
    struct Row {
        NSTextField* _Nonnull mark;
        NSTextField* _Nonnull text;
        NSTextField* _Nonnull advice; // below the text
    };

    NSTextField* const _Nonnull title = label({});
    std::vector<Row> rows;
    NSStackView* const _Nonnull stack = [[NSStackView alloc] init];
    SetUpCard drawn;
};

} // namespace lumbrine
