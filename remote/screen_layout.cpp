#include "remote/screen_layout.h"

#include "remote/message_line.h"
#include "remote/strip_column.h"
#include "remote/terminal_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace lumbrine::remote {
namespace {

constexpr int titleRows = 3;  // title, link, a blank row
constexpr int footerRows = 2; // the strip in words, keys
constexpr int maxColumnWidth = 14;
constexpr int scaleWidth = 4;

std::string bankText(const SessionPicture& picture) {
    if (picture.trackCount == 0) return "no track map";
    const std::string of = " of " + std::to_string(picture.trackCount);
    if (!picture.bankOffset) return "tracks ?" + of;
    const int first = *picture.bankOffset + 1;
    const int last = std::min(first + picture.shownStrips - 1, static_cast<int>(picture.trackCount));
    return "tracks " + std::to_string(first) + "-" + std::to_string(last) + of;
}

struct Part {
    std::string text;
    Style style;
};

Part transportPart(const Transport& transport) {
    if (transport.recording) return {transport.playing ? " ● REC " : " ● rec ready ", {Ink::red, true, false, true}};
    if (transport.playing) return {" ▶ PLAY ", {Ink::green, true, false, true}};
    return {" ■ stop ", {.reverse = true}};
}

void drawTitle(Canvas& canvas, const SessionPicture& picture, const ViewState& view) {
    canvas.putFitted(0, 0, " lumbrine-remote  " + printable(view.receiver), canvas.columns(), {.reverse = true});
    const Part transport = transportPart(picture.transport);
    const std::string rest = " " + bankText(picture) + "  pan " + (picture.panRight ? "right " : "left ");
    const int column = canvas.columns() - columnsOf(transport.text) - columnsOf(rest);
    canvas.put(0, column, transport.text, transport.style);
    canvas.put(0, column + columnsOf(transport.text), rest, {.reverse = true});
}

Part linkPart(const ViewState& view) {
    switch (view.link) {
    case LinkState::searching:
        return {view.receiver.empty() ? "Searching for a receiver on the network ..." : "Calling the receiver ...",
                {Ink::yellow}};
    case LinkState::connected:
        return {"Connected.", {Ink::green}};
    case LinkState::busy:
        return {"Another device is in control: press T to take over.", {Ink::yellow, true}};
    case LinkState::takenOver:
        return {"Another device has taken over: press T to take control back.", {Ink::red, true}};
    case LinkState::lost:
        return {"The receiver has gone silent. Still calling it ...", {Ink::red, true}};
    }
    return {};
}

struct Columns {
    int left;
    int width;
};

// As wide as fits, and a scale at the left when that costs no strip its room; no width when not even narrow ones fit.
Columns columnsFor(int strips, int columns) {
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
    const Columns columns = columnsFor(picture.shownStrips, canvas.columns());
    const int height = canvas.rows() - titleRows - footerRows;
    for (int i = 0; i < picture.shownStrips; ++i) {
        const Strip strip = *Strip::of(i);
        const ColumnPlace place{titleRows, columns.left + i * columns.width, columns.width, height};
        if (i == 0 && columns.left > 0) drawScale(canvas, place);
        drawStrip(canvas, place, picture.at(strip),
                  {i + 1, strip == view.cursor, view.held[strip.slot()], view.blinkOn, picture.panRight});
    }
}

const SessionTrack* trackOn(const SessionPicture& picture, Strip strip) {
    if (!picture.bankOffset) return nullptr;
    const int index = *picture.bankOffset + strip.index();
    const auto track = picture.session.find(static_cast<std::uint16_t>(index));
    return index <= 0xFFFF && track != picture.session.end() ? &track->second : nullptr;
}

// The strip under the cursor, with what has no room in its column.
std::string stripInWords(const SessionPicture& picture, Strip strip) {
    const StripPicture& shown = picture.at(strip);
    const std::string& name = shown.fullName.empty() ? shown.name : shown.fullName;
    std::array<char, 16> fader{};
    std::snprintf(fader.data(), fader.size(), "%.1f", shown.fader.unit() * 100);
    std::string text = "Strip " + std::to_string(strip.index() + 1) + ": " + (name.empty() ? "no track" : name) +
                       "  fader " + fader.data() + "  automation " + std::string(autoModeName(shown.autoMode));
    const SessionTrack* track = trackOn(picture, strip);
    if (track != nullptr && track->row && !track->row->comment.empty()) text += "  \"" + track->row->comment + "\"";
    return printable(text);
}

std::string footer(const ViewState& view) {
    switch (view.prompt) {
    case Prompt::goToTrack:
        return "Go to track: " + view.typed + "_   (Enter goes there, Esc stays)";
    case Prompt::autoMode:
        return "Automation: r read  t touch  l latch  w write  o off  i trim   (Esc leaves it)";
    case Prompt::none:
        break;
    }
    return "← → strip  ↑ ↓ fader  m s r  Enter select  , . pan  [ ] bank  ? help  q quit";
}

constexpr std::array<const char*, 17> help{
    "  ← →  1-9 0  Tab      another strip; Tab: the same one on the other surface",
    "  ↑ ↓                  fader by 2 of 100",
    "  + -                  fader by 0.2",
    "  Page up, page down   fader by 10",
    "  m  s  r              mute, solo, record arm",
    "  Enter                select the track",
    "  i                    input monitoring",
    "  ,  .  c              pan to the left, to the right, to the centre",
    "  p                    turn the other side of stereo pans",
    "  a                    automation mode",
    "  [  ]                 a bank to the left, to the right",
    "  {  }                 a track to the left, to the right",
    "  g                    go to a track by its number",
    "  R                    build the track map anew",
    "  T                    take over control",
    "  Ctrl-L               ask for everything and draw anew",
    "  q  Ctrl-C            quit",
};

void drawHelp(Canvas& canvas) {
    for (std::size_t i = 0; i < help.size(); ++i)
        canvas.put(titleRows + static_cast<int>(i), 0, help[i]);
}

} // namespace

Canvas screenOf(const SessionPicture& picture, const ViewState& view, int rows, int columns) {
    Canvas canvas(rows, columns);
    if (rows < minRows || columnsFor(picture.shownStrips, columns).width < ColumnPlace::minWidth) {
        canvas.put(0, 0,
                   "The window is too small; " + std::to_string(picture.shownStrips * ColumnPlace::minWidth) + " x " +
                       std::to_string(minRows) + " would do.");
        return canvas;
    }
    drawTitle(canvas, picture, view);
    const Part link = linkPart(view);
    canvas.put(1, 1, link.text, link.style);
    if (view.help) {
        drawHelp(canvas);
        canvas.put(rows - 1, 1, "Any key goes back.", {.dim = true});
        return canvas;
    }
    drawStrips(canvas, picture, view);
    canvas.put(rows - 2, 1, stripInWords(picture, view.cursor));
    canvas.put(rows - 1, 1, footer(view), {.dim = view.prompt == Prompt::none});
    return canvas;
}

} // namespace lumbrine::remote
