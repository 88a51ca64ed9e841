#include "remote/strip_column.h"

#include "remote/message_line.h"
#include "remote/short_words.h"
#include "remote/terminal_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace lumbrine::remote {
namespace {

constexpr int roomyWidth = 8; // from this width on, there is room for words and a pan bar

// The common data of the functions that draw the parts of one strip.
struct Column {
    Canvas& canvas;
    const ColumnPlace& place;
    const StripPicture& strip;
    const StripLook& look;

    int inner() const { return place.width - 1; }
    bool roomy() const { return place.width >= roomyWidth; }
    bool empty() const { return strip.name.empty() && strip.fullName.empty(); }

    void number() const;
    void names() const;
    void lights() const;
    void light(int column, char letter, Light light, Ink ink) const;
    void pan(int row, PanSide side) const;
    void fader() const;
    void meter(int column, int level) const;
    void value() const;
    void automation() const;
};

void Column::number() const {
    std::string text = std::to_string(look.number);
    if (strip.select) text += roomy() ? " select" : " ◆";
    canvas.putFitted(place.top, place.left, text, inner(),
                     {.ink = strip.select ? Ink::cyan : Ink::plain,
                      .bold = strip.select || look.cursor,
                      .dim = empty() && !look.cursor,
                      .reverse = look.cursor});
}

void Column::names() const {
    Style style{.bold = true, .background = strip.color};
    if (!strip.color && !empty()) style.reverse = true;
    canvas.putFitted(place.top + 1, place.left, printable(strip.name), inner(), style);
    canvas.putFitted(place.top + 2, place.left, printable(strip.fullName), inner());
}

void Column::light(int column, char letter, Light light, Ink ink) const {
    const bool lit = light == Light::on || (light == Light::blinking && look.blinkOn);
    const std::string text = light == Light::off ? "·" : std::string(1, letter);
    const Style style = lit ? Style{.ink = ink, .bold = true, .reverse = true}
                            : Style{.ink = light == Light::off ? Ink::plain : ink, .dim = light == Light::off};
    canvas.put(place.top + 3, place.left + column, text, style);
}

void Column::lights() const {
    const int step = roomy() ? 2 : 1;
    const auto steady = [](bool on) { return on ? Light::on : Light::off; };
    light(0, 'M', strip.lights.mute, Ink::yellow);
    light(step, 'S', steady(strip.lights.solo), Ink::cyan);
    light(2 * step, 'R', strip.lights.record, Ink::red);
    light(3 * step, 'I', steady(strip.inputMonitor), Ink::green);
}

void Column::pan(int row, PanSide side) const {
    const RingPosition& ring = strip.ring(side);
    const bool turned = (side == PanSide::right) == look.panRight;
    const Style style{.bold = turned && ring.position > 0, .dim = !turned || ring.position == 0};
    canvas.put(row, place.left, side == PanSide::left ? "L" : "R", style);
    if (!roomy()) {
        canvas.put(row, place.left + 1, panInShort(ring.position), style);
        return;
    }
    const int room = std::min(inner() - 1, static_cast<int>(maxPanPosition));
    const int length = room - (room % 2 == 0 ? 1 : 0); // odd, so that there is a cell exactly in the centre
    for (int cell = 0; cell < length; ++cell)
        canvas.put(row, place.left + 1 + cell, "─", {.dim = true});
    if (ring.position == 0) return;
    const int at = static_cast<int>(std::lround((ring.position - 1) / 10.0 * (length - 1)));
    canvas.put(row, place.left + 1 + at, ring.centre ? "◉" : "●", style);
}

// The knob moves in steps of half a row: it is a half block in the upper or the lower half of a row.
void Column::fader() const {
    const int rows = place.faderRows();
    const int left = place.left + (roomy() ? 1 : 0);
    const std::string rail = roomy() ? " │ " : "▕▏";
    for (int row = 0; row < rows; ++row)
        canvas.put(place.faderTop() + row, left, rail, {.dim = true});
    const int halves = static_cast<int>(std::lround(strip.fader.unit() * (2 * rows - 1)));
    const int row = place.faderTop() + rows - 1 - halves / 2;
    const std::string half = halves % 2 == 1 ? "▀" : "▄";
    const Style style{.ink = look.held ? Ink::yellow : Ink::plain, .bold = true, .dim = empty() && !look.held};
    canvas.put(row, left, roomy() ? half + half + half : half + half, style);
    const int meters = left + (roomy() ? 4 : 2);
    meter(meters, strip.meters.left);
    meter(meters + 1, strip.meters.right);
}

void Column::meter(int column, int level) const {
    static constexpr std::array<const char*, 9> blocks{" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
    const int rows = place.faderRows();
    const int filled = level * 8 * rows / maxMeterLevel; // eighths of a row
    for (int fromBottom = 0; fromBottom < rows; ++fromBottom) {
        const int eighths = std::clamp(filled - 8 * fromBottom, 0, 8);
        const int height = (fromBottom + 1) * maxMeterLevel / rows;
        const Ink ink = height >= 12 ? Ink::red : height >= 10 ? Ink::yellow : Ink::green;
        canvas.put(place.faderTop() + rows - 1 - fromBottom, column, blocks[static_cast<std::size_t>(eighths)],
                   {.ink = ink});
    }
}

void Column::value() const {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), roomy() ? "%5.1f" : "%.0f", strip.fader.unit() * 100);
    canvas.putFitted(place.top + place.height - 2, place.left, text.data(), inner(), {.dim = empty()});
}

void Column::automation() const {
    std::string text = autoModeInShort(strip.autoMode);
    if (strip.autoMode != 0 && columnsOf(autoModeName(strip.autoMode)) <= inner()) text = autoModeName(strip.autoMode);
    canvas.putFitted(place.top + place.height - 1, place.left, text, inner(),
                     {.ink = inkOf(strip.autoMode), .dim = strip.autoMode == 0});
}

} // namespace

void drawStrip(Canvas& canvas, const ColumnPlace& place, const StripPicture& strip, const StripLook& look) {
    const Column column{canvas, place, strip, look};
    column.number();
    column.names();
    column.lights();
    column.pan(place.top + 4, PanSide::left);
    column.pan(place.top + 5, PanSide::right);
    column.fader();
    column.value();
    column.automation();
}

} // namespace lumbrine::remote
