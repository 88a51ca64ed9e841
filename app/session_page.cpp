#include "app/session_page.h"

#include <algorithm>
#include <cmath>

namespace lumbrine {

namespace {

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool contains(std::string_view text, std::string_view part) {
    return !std::ranges::search(text, part, {}, lowered, lowered).empty();
}

bool matches(const SessionRow& row, std::string_view search) {
    return search.empty() || row.number == search || contains(row.name, search) || contains(row.comment, search);
}

std::string lightsOf(bool mute, bool solo, bool record, bool inputMonitor) {
    std::string lights;
    for (const auto& [on, letter] :
         {std::pair(mute, 'M'), std::pair(solo, 'S'), std::pair(record, 'R'), std::pair(inputMonitor, 'I')}) {
        if (!on) continue;
        if (!lights.empty()) lights += ' ';
        lights += letter;
    }
    return lights;
}

std::string percent(double fader) {
    return std::to_string(std::lround(std::clamp(fader, 0.0, 1.0) * 100)) + " %";
}

// What a strip shows is newer than what is known of its track.
SessionRow rowOf(const PublishedState& published, std::size_t index) {
    const Track& track = published.session.tracks[index];
    SessionRow row{.track = index,
                   .number = std::to_string(index + 1),
                   .strip = {},
                   .name = track.name.value_or(track.display),
                   .color = track.color,
                   .fader = track.fader ? percent(*track.fader) : "",
                   .lights = lightsOf(track.mute, track.solo, track.record, track.inputMonitor),
                   .comment = track.comment};
    const auto first = published.trackOn(0);
    if (!first || index < *first || index - *first >= published.shownStrips().size()) return row;
    const std::size_t slot = index - *first;
    const StripState& strip = published.strips[slot];
    row.strip = std::to_string(slot + 1);
    row.lights = lightsOf(strip.mute.rawOn, strip.solo, strip.record.rawOn, track.inputMonitor);
    if (strip.faderIsKnown()) row.fader = percent(strip.fader);
    return row;
}

std::string noteOn(std::size_t rows, std::size_t tracks, const Bilingual& text) {
    if (tracks == 0)
        return text("No tracks are known yet: the session is scanned when Pro Tools and a phone are connected.",
                    "トラックはまだ計測されていません。Pro Tools とスマートフォンが接続されると計測されます。");
    const std::string shown = std::to_string(rows), all = std::to_string(tracks);
    return text(shown + " of " + all + " tracks. Click one to bring it to the surfaces.",
                "全 " + all + " トラック中 " + shown + " 件。クリックするとサーフェスに表示します。");
}

} // namespace

SessionPage sessionPage(const PublishedState& published, std::string_view search, const Bilingual& text) {
    SessionPage page{.title = text("Session", "セッション"),
                     .searchHint = text("Search: name, comment or number", "検索: 名前・コメント・番号"),
                     .headings = {text("Track", "番号"), text("Strip", "ストリップ"), text("Name", "名前"),
                                  text("Fader", "フェーダー"), text("Lights", "状態"), text("Comment", "コメント")},
                     .rows = {},
                     .note = {}};
    for (std::size_t i = 0; i < published.session.size(); ++i)
        if (SessionRow row = rowOf(published, i); matches(row, search)) page.rows.push_back(std::move(row));
    page.note = noteOn(page.rows.size(), published.session.size(), text);
    return page;
}

} // namespace lumbrine
