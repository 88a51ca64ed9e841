#include "remote/session_page.h"

#include "remote/message_line.h"
#include "remote/short_words.h"
#include "remote/terminal_text.h"

#include <algorithm>
#include <cmath>

namespace lumbrine::remote {
namespace {

// The first column of each field. A wide page has longer names, names of modes, and a fader that shows its position.
struct PageColumns {
    static constexpr int mark = 1;
    static constexpr int strip = 3;
    static constexpr int number = 6;
    static constexpr int numberWidth = 5;
    static constexpr int name = 12;
    static constexpr int wide = 110; // columns of the terminal from which a page counts as wide

    explicit PageColumns(int pageWidth)
        : nameWidth(pageWidth >= wide ? 32 : 20), faderBar(name + nameWidth + 1), barWidth(pageWidth >= wide ? 21 : 0),
          fader(faderBar + (barWidth > 0 ? barWidth + 1 : 0)), lights(fader + 6), select(lights + 8),
          autoMode(select + 2), autoModeWidth(pageWidth >= wide ? 10 : 4), pan(autoMode + autoModeWidth + 1),
          comment(pan + 5), commentWidth(std::max(0, pageWidth - comment)) {}

    int nameWidth;
    int faderBar;
    int barWidth;
    int fader;
    int lights;
    int select;
    int autoMode;
    int autoModeWidth;
    int pan;
    int comment;
    int commentWidth;
};

std::string rightAligned(const std::string& text, int width) {
    return std::string(static_cast<std::size_t>(std::max(0, width - columnsOf(text))), ' ') + text;
}

void drawHeading(Canvas& canvas, int row, const PageColumns& columns, const Bilingual& text) {
    const Style dim{.dim = true};
    canvas.put(row, PageColumns::strip, "st", dim);
    canvas.put(row, PageColumns::number, rightAligned(text("track", "番号"), PageColumns::numberWidth), dim);
    canvas.put(row, PageColumns::name, text("name", "名前"), dim);
    canvas.put(row, columns.fader, text("fader", "音量"), dim);
    canvas.put(row, columns.lights, "M S R I", dim);
    canvas.put(row, columns.autoMode, "auto", dim);
    canvas.put(row, columns.pan, text("pan", "パン"), dim);
    canvas.putFitted(row, columns.comment, text("comment", "コメント"), columns.commentWidth, dim);
}

// One line of the list.
struct Line {
    Canvas& canvas;
    int row;
    const PageColumns& columns;
    const TrackFacts& facts;
    bool cursor;
    bool blinkOn;

    void number(std::uint16_t track, bool marked) const;
    void name() const;
    void fader() const;
    void light(int column, char letter, Light light, Ink ink) const;
    void lights() const;
    void automation() const;
    void pan() const;
};

void Line::number(std::uint16_t track, bool marked) const {
    const bool shown = facts.strip.has_value();
    if (cursor) canvas.put(row, 0, "▶", {.ink = Ink::yellow, .bold = true});
    if (marked) canvas.put(row, PageColumns::mark, "*", {.ink = Ink::yellow, .bold = true});
    if (shown)
        canvas.put(row, PageColumns::strip, rightAligned(std::to_string(facts.strip->index() + 1), 2),
                   {.ink = Ink::cyan, .bold = true});
    canvas.put(row, PageColumns::number, rightAligned(std::to_string(track + 1), PageColumns::numberWidth),
               {.bold = shown || cursor, .dim = !shown && !cursor, .reverse = cursor});
}

void Line::name() const {
    if (facts.name.empty()) return canvas.put(row, PageColumns::name, "·", {.dim = true});
    canvas.putFitted(row, PageColumns::name, printable(facts.name), columns.nameWidth,
                     {.bold = facts.strip.has_value(), .background = facts.color});
}

void Line::fader() const {
    if (!facts.fader) return canvas.put(row, columns.fader, rightAligned("·", 5), {.dim = true});
    const double unit = facts.fader->unit();
    canvas.put(row, columns.fader, rightAligned(faderInShort(unit), 5));
    if (columns.barWidth == 0) return;
    const int at = static_cast<int>(std::lround(unit * (columns.barWidth - 1)));
    for (int i = 0; i < columns.barWidth; ++i)
        canvas.put(row, columns.faderBar + i, i == at ? "█" : i < at ? "━" : "─", {.bold = i == at, .dim = i > at});
}

void Line::light(int column, char letter, Light light, Ink ink) const {
    const bool lit = light == Light::on || (light == Light::blinking && blinkOn);
    if (light == Light::off) return canvas.put(row, columns.lights + column, "·", {.dim = true});
    canvas.put(row, columns.lights + column, std::string(1, letter), {.ink = ink, .bold = lit, .reverse = lit});
}

void Line::lights() const {
    const auto steady = [](bool on) { return on ? Light::on : Light::off; };
    light(0, 'M', facts.lights.mute, Ink::yellow);
    light(2, 'S', steady(facts.lights.solo), Ink::cyan);
    light(4, 'R', facts.lights.record, Ink::red);
    light(6, 'I', steady(facts.inputMonitor), Ink::green);
    if (facts.select) canvas.put(row, columns.select, "◆", {.ink = Ink::cyan, .bold = true});
}

void Line::automation() const {
    std::string text = autoModeInShort(facts.autoMode);
    const std::string name(autoModeName(facts.autoMode));
    if (facts.autoMode != 0 && columnsOf(name) <= columns.autoModeWidth) text = name;
    canvas.putFitted(row, columns.autoMode, text, columns.autoModeWidth,
                     {.ink = inkOf(facts.autoMode), .dim = facts.autoMode == 0});
}

void Line::pan() const {
    if (!facts.pan.known()) return canvas.put(row, columns.pan, "·", {.dim = true});
    canvas.put(row, columns.pan, (facts.pan.side == PanSide::left ? "L" : "R") + panInShort(facts.pan.ring.position));
}

std::string markedInWords(std::size_t marked, const Bilingual& text) {
    if (marked == 0) return {};
    const std::string count = std::to_string(marked);
    return text(count + (marked == 1 ? " track" : " tracks") + " marked.  ", count + " トラックに印  ");
}

} // namespace

int tracksIn(int height) {
    return std::max(0, height - 1);
}

void drawSession(Canvas& canvas, int top, int height, const SessionPicture& picture, const ViewState& view) {
    const Offset offset = offsetOf(picture, view);
    const SessionList& list = view.session;
    const PageColumns columns(canvas.columns());
    drawHeading(canvas, top, columns, view.text);
    if (picture.trackCount == 0)
        canvas.put(top + 2, PageColumns::name,
                   view.text("The receiver has no track map yet: it scans the session when Pro Tools is "
                             "there and stopped.",
                             "トラックは未計測です。Pro Tools に接続し、停止中に計測されます。"));
    for (int line = 0; line < tracksIn(height) && list.first + line < picture.trackCount; ++line) {
        const auto track = static_cast<std::uint16_t>(list.first + line);
        const TrackFacts facts = factsOf(picture, offset, track);
        const Line drawn{canvas, top + 1 + line, columns, facts, track == list.cursor, view.blinkOn};
        drawn.number(track, list.marked.contains(track));
        drawn.name();
        drawn.fader();
        drawn.lights();
        drawn.automation();
        drawn.pan();
        canvas.putFitted(drawn.row, columns.comment, printable(facts.comment), columns.commentWidth);
    }
}

std::string trackInWords(const SessionPicture& picture, Offset offset, const SessionList& list, const Bilingual& text) {
    std::string words = markedInWords(list.marked.size(), text);
    if (list.cursor >= picture.trackCount) return words;
    const TrackFacts facts = factsOf(picture, offset, list.cursor);
    words += text("Track ", "トラック ") + std::to_string(list.cursor + 1) + ": " +
             (facts.name.empty() ? text("no name", "名前なし") : facts.name);
    if (facts.fader) words += text("  fader ", "  フェーダー ") + faderInShort(facts.fader->unit());
    words += text("  automation ", "  オートメーション ") + std::string(autoModeName(facts.autoMode));
    if (!facts.comment.empty()) words += text("  \"" + facts.comment + "\"", "  「" + facts.comment + "」");
    return printable(words);
}

} // namespace lumbrine::remote
