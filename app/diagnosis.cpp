#include "app/diagnosis.h"

#include "app/check_case.h"

#include <algorithm>

namespace lumbrine {

std::string_view markOf(CheckState state) {
    switch (state) {
    case CheckState::fine:
        return "✓ ";
    case CheckState::waiting:
        return "… ";
    case CheckState::wrong:
        return "✗ ";
    case CheckState::unknown:
        break;
    }
    return "? ";
}

std::vector<Check> diagnosis(const PublishedState& published, HostSystem system, const Bilingual& text) {
    const Health& health = published.health;
    const bool onMac = system == HostSystem::mac;
    const Case c{.published = published, .health = health, .onMac = onMac, .text = text};
    std::vector<Check> checks{
        portCheck(c),
        addressCheck(c),
        announcementCheck(c),
        midiCheck(c),
        connectionCheck(c),
        surfaceCheck(c, {"surface-a", "Lumbrine", "1-8", published.huiConnected, health.surfaceAWasHeard}),
        surfaceCheck(c, {"surface-b", "Lumbrine B", "9-16", published.winW == stripCount, health.surfaceBWasHeard}),
        faderCheck(c),
        mapCheck(c),
        scriptingCheck(c)};
    if (onMac) checks.push_back(screenCheck(c));
    checks.push_back(phoneCheck(c));
    return checks;
}

Check outputCheck(std::size_t backlog, const Bilingual& text) {
    constexpr std::size_t usual = 50; // a burst of lines that the reader has yet to see
    Check check{.id = "output",
                .state = CheckState::fine,
                .title = text("Standard output", "標準出力"),
                .sentence = text("It takes every line of the log.", "ログはすべて出力されています。")};
    if (backlog <= usual) return check;
    const std::string count = std::to_string(backlog);
    check.state = CheckState::wrong;
    check.sentence = text("Nobody reads it: " + count + " lines of the log wait or are lost.",
                          "読み取られていないため、ログ " + count + " 行が滞っているか失われています。");
    check.remedy = text("Faders work all the same. End or wake the program that reads it.",
                        "フェーダーの動作には影響しません。標準出力を読み取るプログラムを確認してください。");
    return check;
}

bool isAnyWrong(const std::vector<Check>& checks) {
    return std::ranges::find(checks, CheckState::wrong, &Check::state) != checks.end();
}

std::string summaryOf(const std::vector<Check>& checks, const Bilingual& text) {
    for (const CheckState state : {CheckState::wrong, CheckState::waiting})
        if (const auto found = std::ranges::find(checks, state, &Check::state); found != checks.end())
            return found->sentence;
    return text("Everything is fine.", "すべて正常です。");
}

std::string listed(const std::vector<Check>& checks) {
    std::string lines;
    for (const Check& check : checks) {
        lines.append(markOf(check.state)).append(check.title).append(": ").append(check.sentence).append("\n");
        if (!check.remedy.empty()) lines.append("    → ").append(check.remedy).append("\n");
    }
    return lines;
}

std::string withPlainAddresses(std::string text) {
    static constexpr std::string_view mapped = "::ffff:";
    for (std::size_t at = text.find(mapped); at != std::string::npos; at = text.find(mapped, at)) {
        const std::size_t end = text.find_first_not_of("0123456789.", at + mapped.size());
        const std::string_view host = std::string_view(text).substr(at + mapped.size(), end - at - mapped.size());
        if (std::ranges::count(host, '.') == 3) {
            text.erase(at, mapped.size());
        } else {
            at += mapped.size();
        }
    }
    return text;
}

} // namespace lumbrine
