#include "remote/screen_layout.h"

#include "remote/key_help.h"
#include "remote/message_line.h"
#include "remote/session_page.h"
#include "remote/short_words.h"
#include "remote/strip_column.h"
#include "remote/terminal_text.h"
#include "remote/track_facts.h"

#include <algorithm>
#include <array>

namespace lumbrine::remote {
namespace {

constexpr int titleRows = 3;  // title, link, a blank row
constexpr int footerRows = 2; // description of the strip, keys
constexpr int maxColumnWidth = 14;
constexpr int scaleWidth = 4;

// On the session page, the heading of the list replaces the blank row.
constexpr int sessionHeight(int rows) {
    return rows - (titleRows - 1) - footerRows;
}

std::string bankText(const SessionPicture& picture, Offset offset, const Bilingual& text) {
    if (picture.trackCount == 0) return text("no track map", "トラック未計測");
    const std::string tracks = text("tracks ", "トラック ");
    const std::string of = text(" of ", " / 全 ") + std::to_string(picture.trackCount);
    if (!offset) return tracks + "?" + of;
    const int first = *offset + 1;
    const int last = std::min(first + picture.shownStrips - 1, static_cast<int>(picture.trackCount));
    return tracks + std::to_string(first) + "-" + std::to_string(last) + of;
}

struct Part {
    std::string text;
    Style style;
};

Part transportPart(const Transport& transport, const Bilingual& text) {
    const Style recording{Ink::red, true, false, true};
    if (transport.recording)
        return {transport.playing ? text(" ● REC ", " ● 録音中 ") : text(" ● rec ready ", " ● 録音待機 "), recording};
    if (transport.playing) return {text(" ▶ PLAY ", " ▶ 再生中 "), {Ink::green, true, false, true}};
    return {text(" ■ stop ", " ■ 停止 "), {.reverse = true}};
}

void drawTitle(Canvas& canvas, const SessionPicture& picture, const ViewState& view) {
    canvas.putFitted(0, 0, " lumbrine-remote  " + printable(view.receiver), canvas.columns(), {.reverse = true});
    const Bilingual& text = view.text;
    const Part transport = transportPart(picture.transport, text);
    const std::string side = picture.panRight ? text("  pan right ", "  パン 右 ") : text("  pan left ", "  パン 左 ");
    const std::string rest = " " + bankText(picture, offsetOf(picture, view), text) + side;
    const int column = canvas.columns() - columnsOf(transport.text) - columnsOf(rest);
    canvas.put(0, column, transport.text, transport.style);
    canvas.put(0, column + columnsOf(transport.text), rest, {.reverse = true});
}

Part linkPart(const ViewState& view) {
    const Bilingual& text = view.text;
    switch (view.link) {
    case LinkState::searching:
        return {view.receiver.empty()
                    ? text("Searching for a receiver on the network ...", "ネットワーク上のレシーバーを検索中…")
                    : text("Calling the receiver ...", "レシーバーに接続中…"),
                {Ink::yellow}};
    case LinkState::connected:
        return {text("Connected.", "接続中"), {Ink::green}};
    case LinkState::busy:
        return {text("Another device is in control: press T to take over.",
                     "別の端末が操作中です。T キーで操作を引き継ぎます。"),
                {Ink::yellow, true}};
    case LinkState::takenOver:
        return {text("Another device has taken over: press T to take control back.",
                     "別の端末が操作を引き継ぎました。T キーで操作を取り戻します。"),
                {Ink::red, true}};
    case LinkState::lost:
        return {text("The receiver has gone silent. Still calling it ...",
                     "レシーバーの応答が途絶えました。接続を試みています…"),
                {Ink::red, true}};
    }
    return {};
}

struct StripColumns {
    int left;
    int width;
};

// The widest columns that fit. A scale stands at the left if the columns stay wide enough. The width may be below the
// minimum when there are too many strips for the page.
StripColumns columnsFor(int strips, int columns) {
    const int withScale = std::min(maxColumnWidth, (columns - scaleWidth) / strips);
    if (withScale >= ColumnPlace::minWidth) return {scaleWidth, withScale};
    return {0, columns / strips};
}

void drawScale(Canvas& canvas, const ColumnPlace& place) {
    static constexpr std::array<const char*, 5> marks{"  0", " 25", " 50", " 75", "100"};
    const int rows = place.faderRows();
    for (int i = 0; i < 5; ++i)
        canvas.put(place.faderTop() + (rows - 1) * (4 - i) / 4, 0, marks[static_cast<std::size_t>(i)], {.dim = true});
}

void drawStrips(Canvas& canvas, const SessionPicture& picture, const ViewState& view) {
    const StripColumns columns = columnsFor(picture.shownStrips, canvas.columns());
    const int height = canvas.rows() - titleRows - footerRows;
    for (int i = 0; i < picture.shownStrips; ++i) {
        const Strip strip = *Strip::of(i);
        const ColumnPlace place{titleRows, columns.left + i * columns.width, columns.width, height};
        if (i == 0 && columns.left > 0) drawScale(canvas, place);
        drawStrip(canvas, place, picture.at(strip),
                  {i + 1, strip == view.cursor, view.held[strip.slot()], view.blinkOn, picture.panRight});
    }
}

// Describes the strip under the cursor, including what does not fit its column.
std::string stripInWords(const SessionPicture& picture, Offset offset, Strip strip, const Bilingual& text) {
    const StripPicture& shown = picture.at(strip);
    const std::string& name = shown.fullName.empty() ? shown.name : shown.fullName;
    std::string words = text("Strip ", "ストリップ ") + std::to_string(strip.index() + 1) + ": " +
                        (name.empty() ? text("no track", "トラックなし") : name) + text("  fader ", "  フェーダー ") +
                        faderInShort(shown.fader.unit()) + text("  automation ", "  オートメーション ") +
                        std::string(autoModeName(shown.autoMode));
    const auto track = trackOn(picture, offset, strip);
    const std::string comment = track ? factsOf(picture, offset, *track).comment : "";
    if (!comment.empty()) words += text("  \"" + comment + "\"", "  「" + comment + "」");
    return printable(words);
}

std::string footer(const ViewState& view) {
    const Bilingual& text = view.text;
    switch (view.prompt) {
    case Prompt::goToTrack:
        return text("Go to track: ", "移動先のトラック: ") + view.typed +
               text("_   (Enter goes there, Esc stays)", "_   （Enter で移動、Esc で中止）");
    case Prompt::autoMode:
        return text("Automation: r read  t touch  l latch  w write  o off  i trim   (Esc leaves it)",
                    "オートメーション: r read  t touch  l latch  w write  o off  i trim （Esc 中止）");
    case Prompt::pan:
        return text("Pan: ", "パン: ") + view.typed +
               text("_   (-5 left, 0 centre, 5 right; Enter turns it, Esc leaves it)",
                    "_   （-5 左、0 中央、5 右。Enter で実行、Esc で中止）");
    case Prompt::fader:
        return text("Fader: ", "フェーダー: ") + view.typed +
               text("_   (0 to 100; Enter moves, Esc leaves)", "_   （0〜100。Enter で実行、Esc で中止）");
    case Prompt::none:
        break;
    }
    if (view.page == Page::session)
        return text("↑ ↓ track  Enter go there  Space mark  f a m s act  c modes  v strips  ? help",
                    "↑↓ トラック  Enter 移動  Space 印  f a m s 操作  c モード  v 戻る  ? 説明");
    return text("← → strip  ↑ ↓ fader  m s r  Enter select  , . pan  [ ] bank  v session  ? help",
                "←→ 選ぶ  ↑↓ フェーダー  m s r  Enter 選択  , . パン  [ ] バンク  v 全体  ? 説明");
}

void drawHelp(Canvas& canvas, Page page, const Bilingual& text) {
    constexpr int meaningColumn = 23;
    int row = titleRows;
    for (const KeyHelp& line : keysOf(page)) {
        canvas.put(row, 2, line.keys);
        canvas.put(row++, meaningColumn, text(line.meaning, line.japanese));
    }
}

void drawStripsPage(Canvas& canvas, const SessionPicture& picture, const ViewState& view) {
    drawStrips(canvas, picture, view);
    canvas.put(canvas.rows() - 2, 1, stripInWords(picture, offsetOf(picture, view), view.cursor, view.text));
}

void drawSessionPage(Canvas& canvas, const SessionPicture& picture, const ViewState& view) {
    const Offset offset = offsetOf(picture, view);
    drawSession(canvas, titleRows - 1, sessionHeight(canvas.rows()), picture, view);
    canvas.put(canvas.rows() - 2, 1, trackInWords(picture, offset, view.session, view.text));
}

bool fits(const SessionPicture& picture, Page page, int rows, int columns) {
    if (rows < minRows) return false;
    if (page == Page::session) return columns >= minSessionColumns;
    return columnsFor(picture.shownStrips, columns).width >= ColumnPlace::minWidth;
}

std::string tooSmall(const SessionPicture& picture, Page page, const Bilingual& text) {
    const int columns = page == Page::session ? minSessionColumns : picture.shownStrips * ColumnPlace::minWidth;
    const std::string size = std::to_string(columns) + " x " + std::to_string(minRows);
    return text("Too small: needs " + size, "画面が小さすぎます（" + size + " 以上）");
}

} // namespace

int tracksOnPage(int rows) {
    return tracksIn(sessionHeight(rows));
}

Canvas screenOf(const SessionPicture& picture, const ViewState& view, int rows, int columns) {
    Canvas canvas(rows, columns);
    if (!fits(picture, view.page, rows, columns)) {
        canvas.put(0, 0, tooSmall(picture, view.page, view.text));
        return canvas;
    }
    drawTitle(canvas, picture, view);
    const Part link = linkPart(view);
    canvas.put(1, 1, link.text, link.style);
    if (view.help) {
        drawHelp(canvas, view.page, view.text);
        canvas.put(rows - 1, 1, view.text("Any key goes back.", "何かキーを押すと戻ります。"), {.dim = true});
        return canvas;
    }
    if (view.page == Page::session) {
        drawSessionPage(canvas, picture, view);
    } else {
        drawStripsPage(canvas, picture, view);
    }
    canvas.put(rows - 1, 1, footer(view), {.dim = view.prompt == Prompt::none});
    return canvas;
}

} // namespace lumbrine::remote
