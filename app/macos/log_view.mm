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

NSAttributedString* shownLine(const std::string& line) {
    NSDictionary* const plain = @{
        NSFontAttributeName : [NSFont systemFontOfSize:NSFont.smallSystemFontSize],
        NSForegroundColorAttributeName : NSColor.labelColor,
    };
    NSString* const whole = shownText(line); // empty when the line is not UTF-8
    NSMutableAttributedString* const text =
        [[NSMutableAttributedString alloc] initWithString:[whole stringByAppendingString:@"\n"] attributes:plain];
    const MarkedLine marked = markerOf(line);
    const auto lengthOf = [&line](std::size_t from, std::size_t size) {
        return shownText(std::string_view(line).substr(from, size)).length;
    };
    const NSRange sign = NSMakeRange(lengthOf(0, marked.begin), lengthOf(marked.begin, marked.length));
    if (NSMaxRange(sign) <= whole.length)
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

void LogView::show(const std::vector<std::string>& lines) {
    const LogChange change = changeBetween(shown, lines);
    if (change.gone == 0 && change.firstNew == lines.size()) return;
    const bool follows = atTheEnd();
    NSTextStorage* const storage = text.textStorage;
    NSUInteger gone = 0;
    for (std::size_t i = 0; i < change.gone; ++i)
        gone += shownText(shown[i]).length + 1;
    [storage beginEditing];
    [storage deleteCharactersInRange:NSMakeRange(0, gone)];
    for (std::size_t i = change.firstNew; i < lines.size(); ++i)
        [storage appendAttributedString:shownLine(lines[i])];
    [storage endEditing];
    shown = lines;
    if (follows) [text scrollToEndOfDocument:nil];
}

} // namespace lumbrine
