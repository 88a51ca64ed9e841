#include "app/macos/receiver_window.h"

#include "platform/macos/foundation_text.h"

namespace lumbrine {

namespace {

constexpr CGFloat margin = 16;
constexpr CGFloat usualWidth = 480;
constexpr CGFloat usualHeight = 640;

NSWindow* makeWindow(const std::string& title) {
    const NSWindowStyleMask style = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                    NSWindowStyleMaskMiniaturizable | NSWindowStyleMaskResizable;
    NSWindow* const window = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, usualWidth, usualHeight)
                                                         styleMask:style
                                                           backing:NSBackingStoreBuffered
                                                             defer:YES];
    window.title = shownText(title);
    window.identifier = shownText(windowIdentifier);
    window.releasedWhenClosed = NO;
    // It comes to the user, beside a full-screen Pro Tools too, and does not take him to another space.
    window.collectionBehavior =
        NSWindowCollectionBehaviorMoveToActiveSpace | NSWindowCollectionBehaviorFullScreenAuxiliary;
    window.contentMinSize = NSMakeSize(minimumWindowWidth, minimumWindowHeight);
    [window center];
    return window;
}

NSTextField* heading(const std::string& text, CGFloat size) {
    NSTextField* const field = label(text);
    field.font = [NSFont systemFontOfSize:size weight:NSFontWeightSemibold];
    return field;
}

NSAttributedString* attributed(const std::vector<TextRun>& runs) {
    NSMutableAttributedString* const whole = [[NSMutableAttributedString alloc] init];
    const CGFloat size = NSFont.systemFontSize;
    for (const TextRun& run : runs) {
        NSFont* const font = run.bold ? [NSFont boldSystemFontOfSize:size] : [NSFont systemFontOfSize:size];
        NSDictionary* const look = @{NSFontAttributeName : font, NSForegroundColorAttributeName : NSColor.labelColor};
        [whole appendAttributedString:[[NSAttributedString alloc] initWithString:shownText(run.text) attributes:look]];
    }
    return whole;
}

NSImageView* symbolView(Symbol symbol, NSColor* tint) {
    NSImageView* const view = [[NSImageView alloc] init];
    view.image = symbolImage(symbolName(symbol));
    view.contentTintColor = tint;
    view.accessibilityElement = NO;
    [view setContentHuggingPriority:NSLayoutPriorityRequired forOrientation:NSLayoutConstraintOrientationHorizontal];
    return view;
}

NSView* space() {
    NSView* const view = [[NSView alloc] init];
    [view setContentHuggingPriority:1 forOrientation:NSLayoutConstraintOrientationHorizontal];
    return view;
}

} // namespace

ReceiverWindow::ReceiverWindow(ReceiverApp& app, LumbrineActionTarget* target)
    : app(app), frame(makeWindow(app.view().windowTitle)), log(app.view().logHeading) {
    arrange(app.view(), target);
}

NSView* ReceiverWindow::noticeBox(const ScreenNotice& shown) {
    NSTextField* const text = [NSTextField wrappingLabelWithString:@""];
    text.attributedStringValue = attributed(shown.text);
    [text setContentCompressionResistancePriority:NSLayoutPriorityDefaultLow
                                   forOrientation:NSLayoutConstraintOrientationHorizontal];
    NSStackView* const both = row(@[ symbolView(shown.symbol, NSColor.systemOrangeColor), text ]);
    both.alignment = NSLayoutAttributeTop;
    both.distribution = NSStackViewDistributionFill;
    return both;
}

void ReceiverWindow::arrange(const ReceiverView& view, LumbrineActionTarget* target) {
    notice = noticeBox(view.notice);
    address.selectable = YES;
    address.font = [NSFont monospacedDigitSystemFontOfSize:NSFont.systemFontSize weight:NSFontWeightRegular];
    NSTextField* const addressTitle = label(view.address.title);
    address.accessibilityLabel = addressTitle.stringValue;
    NSStackView* const addressLine = row(@[
        symbolView(view.address.symbol, NSColor.secondaryLabelColor), addressTitle, address,
        buttonFor(view.connectPhone, target)
    ]);

    NSMutableArray<NSView*>* const moves = [NSMutableArray array];
    for (const ScreenButton& move : view.moves)
        [moves addObject:buttonFor(move, target)];
    [moves addObject:space()];
    [moves addObject:buttonFor(view.test, target)];
    NSStackView* const movesLine = row(moves);
    movesLine.distribution = NSStackViewDistributionFill;

    NSStackView* const headingLine = row(@[ heading(view.heading, 17), space(), buttonFor(view.about, target) ]);
    headingLine.distribution = NSStackViewDistributionFill;

    NSStackView* const all = [NSStackView stackViewWithViews:@[
        headingLine, proTools.view(), client.view(), notice, setUp.view(), buttonFor(view.reconnect, target),
        addressLine, movesLine, position, strips, heading(view.logHeading, 13), log.view()
    ]];
    all.orientation = NSUserInterfaceLayoutOrientationVertical;
    all.alignment = NSLayoutAttributeLeading;
    all.edgeInsets = NSEdgeInsetsMake(margin, margin, margin, margin);
    all.distribution = NSStackViewDistributionFill;
    // The log takes the remaining height.
    [strips setContentHuggingPriority:NSLayoutPriorityDefaultHigh forOrientation:NSLayoutConstraintOrientationVertical];
    [log.view() setContentHuggingPriority:1 forOrientation:NSLayoutConstraintOrientationVertical];
    for (NSView* wide in @[ headingLine, notice, setUp.view(), strips, log.view(), movesLine ])
        [wide.widthAnchor constraintEqualToAnchor:all.widthAnchor constant:-2 * margin].active = YES;
    frame.contentView = all;
}

// Updates before showing, so that the window never appears empty: the system reports its visibility only later.
void ReceiverWindow::show() {
    update();
    if (frame.miniaturized) [frame deminiaturize:nil];
    [frame makeKeyAndOrderFront:nil];
    [NSApp activateIgnoringOtherApps:YES];
}

void ReceiverWindow::draw() {
    if (frame.visible && (frame.occlusionState & NSWindowOcclusionStateVisible) != 0) update();
}

void ReceiverWindow::update() {
    const ReceiverView view = app.view();
    proTools.show(view.proTools);
    client.show(view.client);
    notice.hidden = !view.notice.shown;
    setUp.show(app.card());
    setText(address, view.address.address);
    setText(position, view.position);
    [strips show:view.strips named:view.stripsName];
    log.show(app.logRows());
}

} // namespace lumbrine
