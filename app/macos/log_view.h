// The activity log in the window. For Objective-C++ files only.
#pragma once

#include "app/log_record.h"

#import <AppKit/AppKit.h>

#include <string>
#include <vector>

namespace lumbrine {

// The user can select and copy its text. It scrolls to the newest line unless the user has scrolled up.
class LogView {
public:
    // `name` is its name for screen readers.
    explicit LogView(const std::string& name);

    NSView* _Nonnull view() const { return scroller; }

    void show(const std::vector<LogRow>& rows);

private:
    bool atTheEnd() const;

    NSScrollView* const _Nonnull scroller = [NSTextView scrollableTextView];
    NSTextView* const _Nonnull text;
    std::vector<LogRow> drawn;
};

} // namespace lumbrine
