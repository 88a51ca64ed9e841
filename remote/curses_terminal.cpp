#include "remote/curses_terminal.h"

#include <curses.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>

namespace lumbrine::remote {
namespace {

constexpr int escapeDelayMilliseconds = 25; // after this pause, Esc is the key and not the start of a key sequence
constexpr int noColor = -1;                 // the terminal's default

int cursesColorOf(Ink ink) {
    switch (ink) {
    case Ink::red:
        return COLOR_RED;
    case Ink::green:
        return COLOR_GREEN;
    case Ink::yellow:
        return COLOR_YELLOW;
    case Ink::cyan:
        return COLOR_CYAN;
    case Ink::plain:
        break;
    }
    return noColor;
}

// From 16 on, the 256 colours are a cube with six shades of each channel: 0, 95, 135, 175, 215, 255.
int shadeOf(int channel) {
    return channel < 48 ? 0 : channel < 115 ? 1 : (channel - 35) / 40;
}

int nearestColor(RGBColor color) {
    if (COLORS >= 256) return 16 + 36 * shadeOf(color.red()) + 6 * shadeOf(color.green()) + shadeOf(color.blue());
    return (color.red() > 127 ? 1 : 0) + (color.green() > 127 ? 2 : 0) + (color.blue() > 127 ? 4 : 0);
}

// Black or white, whichever is readable on this colour.
int readableUpon(RGBColor color) {
    const bool bright = 299 * color.red() + 587 * color.green() + 114 * color.blue() > 128 * 1000;
    if (COLORS >= 256) return bright ? 16 : 231;
    return bright ? COLOR_BLACK : COLOR_WHITE;
}

// The boxes and blocks of the page need UTF-8. Terminals support it even when the environment sets no locale. Nothing
// else in the program uses the locale.
void useUTF8() {
    std::setlocale(LC_CTYPE, "");                             // NOLINT(concurrency-mt-unsafe)
    if (MB_CUR_MAX == 1) std::setlocale(LC_CTYPE, "C.UTF-8"); // NOLINT(concurrency-mt-unsafe)
}

Key keyOf(int code) {
    switch (code) {
    case KEY_LEFT:
        return {SpecialKey::left};
    case KEY_RIGHT:
        return {SpecialKey::right};
    case KEY_UP:
        return {SpecialKey::up};
    case KEY_DOWN:
        return {SpecialKey::down};
    case KEY_PPAGE:
        return {SpecialKey::pageUp};
    case KEY_NPAGE:
        return {SpecialKey::pageDown};
    case KEY_HOME:
        return {SpecialKey::home};
    case KEY_END:
        return {SpecialKey::end};
    case KEY_ENTER:
    case '\n':
    case '\r':
        return {SpecialKey::enter};
    case KEY_BACKSPACE:
    case '\b':
    case 0x7F:
        return {SpecialKey::backspace};
    case '\t':
        return {SpecialKey::tab};
    case 0x1B:
        return {SpecialKey::escape};
    case 'L' - '@':
        return {SpecialKey::redraw};
    case 'C' - '@':
        return {SpecialKey::interrupt};
    default:
        break;
    }
    if (code >= ' ' && code <= '~') return {SpecialKey::none, static_cast<char>(code)};
    return {};
}

} // namespace

bool CursesTerminal::possible() {
    return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;
}

CursesTerminal::CursesTerminal() {
    useUTF8();
    set_escdelay(escapeDelayMilliseconds);
    initscr();
    raw(); // delivers Ctrl-C as a key, so that held faders are released before the program ends
    noecho();
    nonl();
    keypad(stdscr, TRUE);
    nodelay(stdscr, TRUE);
    curs_set(0);
    start_color();
    use_default_colors();
}

CursesTerminal::~CursesTerminal() {
    endwin();
}

std::optional<Key> CursesTerminal::poll() {
    while (true) {
        const int code = getch();
        if (code == ERR) return std::nullopt;
        const Key key = keyOf(code);
        if (key != Key{}) return key;
    }
}

int CursesTerminal::rows() {
    return getmaxy(stdscr);
}

int CursesTerminal::columns() {
    return getmaxx(stdscr);
}

void CursesTerminal::draw(const Canvas& canvas) {
    erase();
    for (int row = 0; row < canvas.rows(); ++row) {
        for (int column = 0; column < canvas.columns(); ++column) {
            const Cell& cell = canvas.at(row, column);
            if (cell.text.empty() || cell == Cell{}) continue;
            attrset(attributesOf(cell.style));
            mvaddstr(row, column, cell.text.c_str());
        }
    }
    refresh();
}

void CursesTerminal::forget() {
    clearok(stdscr, TRUE);
}

int CursesTerminal::attributesOf(const Style& style) {
    attr_t attributes = A_NORMAL;
    if (style.bold) attributes |= A_BOLD;
    if (style.dim) attributes |= A_DIM;
    if (style.reverse) attributes |= A_REVERSE;
    if (!has_colors()) return static_cast<int>(style.background ? attributes | A_REVERSE : attributes);
    const int pair = style.background ? pairOf(readableUpon(*style.background), nearestColor(*style.background))
                                      : pairOf(cursesColorOf(style.ink), noColor);
    return static_cast<int>(attributes | static_cast<attr_t>(COLOR_PAIR(pair)));
}

int CursesTerminal::pairOf(int foreground, int background) {
    if (foreground == noColor && background == noColor) return 0;
    const auto known = pairs.find({foreground, background});
    if (known != pairs.end()) return known->second;
    const int next = static_cast<int>(pairs.size()) + 1;
    constexpr int expressible = 255; // an attribute word has 8 bits for the pair
    if (next >= COLOR_PAIRS || next > expressible) return 0;
    init_pair(static_cast<short>(next), static_cast<short>(foreground), static_cast<short>(background));
    pairs.emplace(std::pair{foreground, background}, next);
    return next;
}

} // namespace lumbrine::remote
