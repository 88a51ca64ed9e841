#include "app/set_up_card.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace lumbrine {

namespace {

using Link = LinkHealth::State;

// Without these no phone moves a fader. A second surface, full names and the announcement by itself are extras, so they
// count only when they have worked before or have failed.
bool isInOrder(const PublishedState& published) {
    const Health& health = published.health;
    const bool secondIsMissing = health.surfaceBWasHeard && published.winW != stripCount;
    return health.udp.state == Link::up && health.midi.state == Link::up && published.huiConnected &&
           !secondIsMissing && published.localIP != "127.0.0.1" && health.announcement.state != Link::down;
}

const Check& checkCalled(const std::vector<Check>& checks, std::string_view id) {
    return *std::ranges::find(checks, id, &Check::id);
}

// The first of the checks that is wrong, else null.
const Check* wrongAmong(const std::vector<Check>& checks, std::initializer_list<std::string_view> ids) {
    for (const std::string_view id : ids) {
        const auto found = std::ranges::find(checks, id, &Check::id);
        if (found != checks.end() && found->state == CheckState::wrong) return &*found;
    }
    return nullptr;
}

std::string spokenState(CheckState state, const Bilingual& text) {
    switch (state) {
    case CheckState::fine:
        return text("Done: ", "完了: ");
    case CheckState::waiting:
        return text("To do: ", "未完了: ");
    case CheckState::wrong:
        return text("Fault: ", "エラー: ");
    case CheckState::unknown:
        break;
    }
    return text("Not known: ", "不明: ");
}

// One step at a time: nobody should set up Pro Tools while something is broken.
void keepOneAdvice(std::vector<SetUpRow>& rows) {
    auto next = std::ranges::find(rows, CheckState::wrong, &SetUpRow::state);
    if (next == rows.end())
        next = std::ranges::find_if(rows, [](const SetUpRow& row) { return row.state != CheckState::fine; });
    for (auto row = rows.begin(); row != rows.end(); ++row)
        if (row != next) row->advice.clear();
}

std::string bothControllers(const Bilingual& text) {
    return text(
        "In Pro Tools open Setup ▸ Peripherals ▸ MIDI Controllers and fill in two rows: Type = HUI, Receive From "
        "= Lumbrine, Send To = Lumbrine, # Ch's = 8; and the same with Lumbrine B for strips 9-16. Close with "
        "OK.",
        "Pro Tools の 設定 ▸ ペリフェラル ▸ MIDI コントローラー で 2 行を設定してください。Type = HUI、Receive From = "
        "Lumbrine、Send To = Lumbrine、# Ch's = 8。もう 1 行は同じ内容で Lumbrine B（ストリップ 9〜16）。OK で"
        "閉じます。");
}

} // namespace

SetUpCard setUpCard(const PublishedState& published, HostSystem system, const Bilingual& text) {
    const std::vector<Check> checks = diagnosis(published, system, text);
    const Check& midi = checkCalled(checks, "midi");
    const Check& first = checkCalled(checks, "surface-a");
    const Check& second = checkCalled(checks, "surface-b");
    const Check& phone = checkCalled(checks, "phone");
    const Check* const rest = wrongAmong(checks, {"port", "address", "announcement", "screen"});

    SetUpCard card{.shown = true, .title = text("Set up", "セットアップ")};
    const auto add = [&card, &text](CheckState state, const std::string& sentence, const std::string& advice) {
        card.rows.push_back(
            {.state = state, .text = sentence, .spoken = spokenState(state, text) + sentence, .advice = advice});
    };
    add(midi.state, midi.sentence, midi.remedy);
    const bool onlyFirst = first.state == CheckState::fine && second.state != CheckState::wrong;
    if (onlyFirst && second.state != CheckState::fine) {
        add(CheckState::fine,
            first.sentence +
                text(" “Lumbrine B” is not set up: 8 strips.", "「Lumbrine B」は未設定です（8 ストリップ）。"),
            {});
    } else {
        const Check& worse = first.state == CheckState::fine ? second : first;
        const bool isNew = worse.state == CheckState::waiting;
        add(worse.state,
            worse.state == CheckState::fine ? text("Pro Tools talks to “Lumbrine” and “Lumbrine B”.",
                                                   "Pro Tools が「Lumbrine」「Lumbrine B」と通信しています。")
                                            : worse.sentence,
            isNew ? bothControllers(text) : worse.remedy);
    }
    add(phone.state, phone.sentence, phone.remedy);
    if (rest != nullptr) {
        add(rest->state, rest->sentence, rest->remedy);
    } else {
        add(CheckState::fine, text("Nothing else is in the way.", "ほかに問題はありません。"), {});
    }
    keepOneAdvice(card.rows);
    return card;
}

SetUpWatch::SetUpWatch(Runtime& runtime, std::function<void()> appeared)
    : runtime(runtime), appeared(std::move(appeared)) {}

void SetUpWatch::look(const PublishedState& published) {
    const bool inOrder = isInOrder(published);
    if (inOrder && published.iosConnected) wasComplete = true;
    if (inOrder && wasComplete) isShown = false;
    if (!wasComplete || std::exchange(isBroken, !inOrder) == !inOrder || inOrder) return;
    runtime.postMainAfter(patience, [this, mine = ++breaks, alive = std::weak_ptr(life)] {
        if (!alive.lock() || !isBroken || mine != breaks) return;
        isShown = true;
        appeared();
    });
}

} // namespace lumbrine
