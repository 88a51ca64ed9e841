#include "app/macos/log_view.h"

#include "app/macos/controls.h"
#include "app/macos/log_pieces.h"
#include "platform/macos/foundation_text.h"

namespace lumbrine {

namespace {

constexpr CGFloat leastHeight = 72;
constexpr CGFloat nearTheEnd = 4; // within this many points of the end, the view counts as scrolled to the end

NSAttributedString* shown(const LogPiece& piece) {
    NSDictionary* const plain = @{
        NSFontAttributeName : [NSFont monospacedDigitSystemFontOfSize:NSFont.smallSystemFontSize
                                                               weight:NSFontWeightRegular],
        NSForegroundColorAttributeName : NSColor.labelColor,
    };
    NSMutableAttributedString* const text = [[NSMutableAttributedString alloc] initWithString:shownText(piece.text)
                                                                                   attributes:plain];
    [text addAttribute:NSForegroundColorAttributeName
                 value:signalColor([](const SignalColours& signals) { return signals.quiet; })
                 range:NSMakeRange(0, piece.timeLength)];
    if (piece.marker != LogMarker::none)
        [text addAttribute:NSForegroundColorAttributeName
                     value:signalColor([marker = piece.marker](const SignalColours& signals) {
                         return *colourOf(marker, signals);
                     })
                     range:NSMakeRange(piece.signBegin, piece.signLength)];
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
    if (rows == drawn) return;
    const LogEdit edit = editBetween(drawn, rows);
    const bool follows = atTheEnd();
    NSTextStorage* const storage = text.textStorage;
    [storage beginEditing];
    [storage deleteCharactersInRange:NSMakeRange(0, edit.gone)];
    [storage deleteCharactersInRange:NSMakeRange(edit.kept, storage.length - edit.kept)];
    for (const LogPiece& piece : edit.added)
        [storage appendAttributedString:shown(piece)];
    [storage endEditing];
    drawn = rows;
    if (follows) [text scrollToEndOfDocument:nil];
}

} // namespace lumbrine
