#include "app/macos/log_view.h"

#include "app/log_lines.h"
#include "platform/macos/foundation_text.h"

namespace lumbrine {

namespace {

constexpr CGFloat leastHeight = 72;
constexpr CGFloat nearTheEnd = 4; // within this many points of the end, the view counts as scrolled to the end

NSColor* colorOf(LogMarker marker) {
    switch (marker) {
    case LogMarker::success:
        return NSColor.systemGreenColor;
    case LogMarker::failure:
        return NSColor.systemRedColor;
    case LogMarker::warning:
        return NSColor.systemOrangeColor;
    case LogMarker::started:
    case LogMarker::received:
    case LogMarker::longJob:
        return NSColor.systemBlueColor;
    case LogMarker::none:
        break;
    }
    return NSColor.labelColor;
}

// The text of a row before its line.
std::string timeColumn(const LogRow& row) {
    return row.time.empty() ? std::string() : row.time + "  ";
}

NSUInteger lengthOf(const LogRow& row) {
    return shownText(timeColumn(row)).length + shownText(row.line).length + 1;
}

NSAttributedString* shownRow(const LogRow& row) {
    NSDictionary* const plain = @{
        NSFontAttributeName : [NSFont monospacedDigitSystemFontOfSize:NSFont.smallSystemFontSize
                                                               weight:NSFontWeightRegular],
        NSForegroundColorAttributeName : NSColor.labelColor,
    };
    NSString* const time = shownText(timeColumn(row));
    NSString* const line = shownText(row.line); // empty when the line is not UTF-8
    NSString* const whole = [[time stringByAppendingString:line] stringByAppendingString:@"\n"];
    NSMutableAttributedString* const text = [[NSMutableAttributedString alloc] initWithString:whole attributes:plain];
    [text addAttribute:NSForegroundColorAttributeName
                 value:NSColor.secondaryLabelColor
                 range:NSMakeRange(0, time.length)];
    const MarkedLine marked = markerOf(row.line);
    const auto lengthIn = [&row](std::size_t from, std::size_t size) {
        return shownText(std::string_view(row.line).substr(from, size)).length;
    };
    const NSRange sign = NSMakeRange(time.length + lengthIn(0, marked.begin), lengthIn(marked.begin, marked.length));
    if (NSMaxRange(sign) <= time.length + line.length)
        [text addAttribute:NSForegroundColorAttributeName value:colorOf(marked.marker) range:sign];
    return text;
}

} // namespace

LogView::LogView(const std::string& name) : text(static_cast<NSTextView*>(scroller.documentView)) {
    text.editable = NO;
    text.selectable = YES;
    text.textContainerInset = NSMakeSize(4, 4);
    text.accessibilityLabel = shownText(name);
    scroller.hasVerticalScroller = YES;
    scroller.borderType = NSBezelBorder;
    [scroller.heightAnchor constraintGreaterThanOrEqualToConstant:leastHeight].active = YES;
}

bool LogView::atTheEnd() const {
    return NSMaxY(scroller.contentView.bounds) >= NSMaxY(text.frame) - nearTheEnd;
}

void LogView::show(const std::vector<LogRow>& rows) {
    if (rows == shown) return;
    const RowChange change = changeBetween(shown, rows);
    const bool follows = atTheEnd();
    NSTextStorage* const storage = text.textStorage;
    NSUInteger gone = 0;
    for (std::size_t i = 0; i < change.gone; ++i)
        gone += lengthOf(shown[i]);
    NSUInteger kept = 0;
    for (std::size_t i = 0; i < change.kept; ++i)
        kept += lengthOf(rows[i]);
    [storage beginEditing];
    [storage deleteCharactersInRange:NSMakeRange(0, gone)];
    [storage deleteCharactersInRange:NSMakeRange(kept, storage.length - kept)];
    for (std::size_t i = change.kept; i < rows.size(); ++i)
        [storage appendAttributedString:shownRow(rows[i])];
    [storage endEditing];
    shown = rows;
    if (follows) [text scrollToEndOfDocument:nil];
}

} // namespace lumbrine
