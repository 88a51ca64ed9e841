#include "app/macos/set_up_box.h"

#include "platform/macos/foundation_text.h"

namespace lumbrine {

namespace {

constexpr std::size_t rowCount = 4;
constexpr CGFloat markWidth = 16;

NSColor* colorOf(CheckState state) {
    return signalColor(
        [state](const SignalColours& signals) { return colourOf(state, signals).value_or(signals.quiet); });
}

void letItShrink(NSTextField* text) {
    [text setContentCompressionResistancePriority:NSLayoutPriorityDefaultLow
                                   forOrientation:NSLayoutConstraintOrientationHorizontal];
}

} // namespace

SetUpBox::SetUpBox() {
    stack.orientation = NSUserInterfaceLayoutOrientationVertical;
    stack.alignment = NSLayoutAttributeLeading;
    stack.spacing = 4;
    title.font = [NSFont systemFontOfSize:NSFont.systemFontSize weight:NSFontWeightSemibold];
    [stack addArrangedSubview:title];
    for (std::size_t i = 0; i < rowCount; ++i) {
        const Row made{.mark = label({}),
                       .text = [NSTextField wrappingLabelWithString:@""],
                       .advice = [NSTextField wrappingLabelWithString:@""]};
        made.mark.accessibilityElement = NO;
        [made.mark.widthAnchor constraintEqualToConstant:markWidth].active = YES;
        made.advice.textColor = signalColor([](const SignalColours& signals) { return signals.quiet; });
        for (NSTextField* text : {made.text, made.advice})
            letItShrink(text);
        NSStackView* const both = row(@[ made.mark, made.text ]);
        both.alignment = NSLayoutAttributeFirstBaseline;
        [stack addArrangedSubview:both];
        [stack addArrangedSubview:made.advice];
        rows.push_back(made);
    }
    stack.hidden = YES;
}

void SetUpBox::show(const SetUpCard& card) {
    if (card == drawn) return;
    drawn = card;
    stack.hidden = !card.shown;
    if (!card.shown) return;
    setText(title, card.title);
    for (std::size_t i = 0; i < rows.size() && i < card.rows.size(); ++i) {
        const SetUpRow& wanted = card.rows[i];
        setText(rows[i].mark, std::string(markOf(wanted.state)));
        rows[i].mark.textColor = colorOf(wanted.state);
        setText(rows[i].text, wanted.text);
        rows[i].text.accessibilityLabel = shownText(wanted.spoken);
        setText(rows[i].advice, wanted.advice);
        rows[i].advice.hidden = wanted.advice.empty();
    }
}

} // namespace lumbrine
