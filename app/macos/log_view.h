// The activity log on the screen. For Objective-C++ alone.
#pragma once

#import <AppKit/AppKit.h>

#include <string>
#include <vector>

namespace lumbrine {

// Its text can be selected and copied. Follows the newest line unless the user has scrolled up.
class LogView {
public:
    // What a screen reader calls it.
    explicit LogView(const std::string& name);

    NSView* _Nonnull view() const { return scroller; }

    void show(const std::vector<std::string>& lines);

private:
    bool atTheEnd() const;

    NSScrollView* const _Nonnull scroller = [NSTextView scrollableTextView];
    NSTextView* const _Nonnull text;
    std::vector<std::string> shown;
};

} // namespace lumbrine
