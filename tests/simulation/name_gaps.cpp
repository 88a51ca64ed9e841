#include "tests/simulation/name_gaps.h"

#include "remote/receiver_message.h"
#include "tests/simulation/host_truth.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lumbrine::simulation {

namespace {

// A value or a mode, which stands over a name for a moment.
bool isOverName(std::string_view text) {
    constexpr std::array modes{"Read", "Tch",  "Ltch", "Wrt",  "Off", "TRd",
                               "TTch", "TLch", "TWrt", "Trim", "T/L", "TT/L"};
    return std::ranges::find(modes, text) != modes.end() || text.starts_with('+') || text.starts_with('-') ||
           text.starts_with('<') || text.ends_with('>');
}

// Those that held for some time in between; true when none did at first.
template <typename Texts>
std::pair<std::vector<std::string>, bool> within(const Texts& texts, TimePoint from, TimePoint until) {
    std::vector<std::string> found;
    auto text = std::ranges::lower_bound(texts, from, {}, [](const auto& each) { return each.from; });
    const bool noneAtFirst = text == texts.begin();
    if (!noneAtFirst) --text;
    for (; text != texts.end() && text->from <= until; ++text)
        found.push_back(text->text);
    return {found, noneAtFirst};
}

} // namespace

NameGaps::NameGaps(const SentDatagrams& sent, const HostRecord& host, const Acceptance& acceptance,
                   const Pauses& ofThreads)
    : pauses(ofThreads) {
    for (const ShownTrack& shown : host.shown) {
        Texts& texts = names[static_cast<std::size_t>(shown.strip)];
        add(texts, shown.at, trimmed(shown.text));
    }
    for (const OwnerChange& each : acceptance.changes)
        if (each.isNewcomers) newcomers.insert(each.number);
    auto change = acceptance.changes.begin();
    int owner = 0;
    for (const SentDatagram& datagram : sent.list) {
        for (; change != acceptance.changes.end() && change->at <= datagram.at; ++change)
            owner = change->number;
        const auto message = remote::parseReceiverMessage(datagram.bytes);
        if (const auto* const view = message ? std::get_if<remote::BankPos>(&*message) : nullptr)
            shownStrips.emplace_back(datagram.at, view->shownStrips);
        const auto* const name = message ? std::get_if<remote::TrackName>(&*message) : nullptr;
        if (name == nullptr) continue;
        add(toldTo[{owner, name->strip.index()}], datagram.at, trimmed(name->name));
        add(told[static_cast<std::size_t>(name->strip.index())], datagram.at, trimmed(name->name));
    }
}

// Nothing stands over a blank: a mode there is of another track.
void NameGaps::add(Texts& texts, TimePoint at, std::string text) {
    const std::string before = texts.empty() ? "" : texts.back().text;
    if ((isOverName(text) && !before.empty()) || (!texts.empty() && before == text)) return;
    texts.push_back({at, std::move(text)});
}

bool NameGaps::mayBeUntold(int owner, int strip, TimePoint came) const {
    const TimePoint from = pauses.earliest(came);
    const TimePoint until = pauses.latest(came);
    const auto [displays, noneShown] = within(names[static_cast<std::size_t>(strip)], from, until);
    const auto entry = toldTo.find({owner, strip});
    const auto [texts, noneTold] = within(entry == toldTo.end() ? Texts{} : entry->second, from, until);
    const bool blocked = noneTold && !newcomers.contains(owner);
    return std::ranges::any_of(displays, [&heard = texts, blocked](const std::string& display) {
        return !display.empty() &&
               (blocked || std::ranges::any_of(heard, [&](const std::string& name) { return name != display; }));
    });
}

bool NameGaps::mayBeHidden(int strip, TimePoint came) const {
    const TimePoint until = pauses.latest(came);
    auto view =
        std::ranges::lower_bound(shownStrips, pauses.earliest(came), {}, [](const auto& each) { return each.first; });
    if (view != shownStrips.begin()) --view;
    for (; view != shownStrips.end() && view->first <= until; ++view)
        if (strip >= view->second) return true;
    return false;
}

bool NameGaps::mayHaveChanged(int strip, TimePoint since, TimePoint came) const {
    const TimePoint from = pauses.earliest(since);
    const TimePoint until = pauses.latest(came);
    const auto changed = [&](const Texts& texts) {
        return std::ranges::any_of(texts, [&](const Text& text) { return text.from >= from && text.from <= until; });
    };
    return changed(names[static_cast<std::size_t>(strip)]) || changed(told[static_cast<std::size_t>(strip)]);
}

} // namespace lumbrine::simulation
