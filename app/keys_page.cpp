#include "app/keys_page.h"

namespace lumbrine {

namespace {

std::string useOf(const KeyUse& key, TimePoint now, const Bilingual& text) {
    if (key.last == distantPast) return text("not used since the start", "起動後は未使用");
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(now - key.last).count();
    if (minutes < 1) return text("used just now", "使用中");
    if (minutes < 60)
        return text("used " + std::to_string(minutes) + " min ago", std::to_string(minutes) + " 分前に使用");
    const std::string hours = std::to_string(minutes / 60);
    return text("used " + hours + " h ago", hours + " 時間前に使用");
}

} // namespace

KeysPage keysPage(const std::vector<KeyUse>& keys, PairedMode mode, TimePoint now, const Bilingual& text) {
    KeysPage page{.title = text("Keys", "鍵"),
                  .advice = text("A client with a key is not disturbed by the network, and nobody else can act as it. "
                                 "Scan the code with it or enter the letters.",
                                 "鍵を持つクライアントはネットワークの乱れに影響されず、他人がなりすますことも"
                                 "できません。コードを読み取るか、文字を入力してください。"),
                  .rows = {},
                  .forgetButton = text("Forget", "削除"),
                  .forgetAllButton = text("Forget All", "すべて削除"),
                  .closeButton = text("Close", "閉じる"),
                  .pairedSwitch = text("Only let clients with a key in", "鍵を持つクライアントだけを許可"),
                  .pairedAdvice = {},
                  .onlyPaired = mode.onlyPaired};
    if (mode.isFixed)
        page.pairedAdvice = text("LUMBRINE_CLIENTS decides this.", "LUMBRINE_CLIENTS で設定されています。");
    for (const KeyUse& each : keys)
        page.rows.push_back({each.key.name, each.key.key.text(), useOf(each, now, text)});
    return page;
}

} // namespace lumbrine
