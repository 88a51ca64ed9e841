#include "remote/terminal_console.h"

#include "base/decimal_number.h"
#include "remote/command_builder.h"
#include "remote/track_facts.h"
#include "remote/words.h"

#include <algorithm>
#include <utility>

namespace lumbrine::remote {
namespace {

constexpr double coarse = 0.02;
constexpr double fine = 0.002;
constexpr double page = 0.1;
constexpr std::uint8_t ringCentre = 6;
constexpr std::size_t maxTyped = 5;

std::optional<AutoModeKey> autoModeKeyOf(char character) {
    switch (character) {
    case 'r':
        return AutoModeKey::read;
    case 't':
        return AutoModeKey::touch;
    case 'l':
        return AutoModeKey::latch;
    case 'w':
        return AutoModeKey::write;
    case 'o':
        return AutoModeKey::off;
    case 'i':
        return AutoModeKey::trim;
    default:
        return std::nullopt;
    }
}

} // namespace

TerminalConsole::TerminalConsole(Runtime& runtime, RemoteClient& client, Bilingual text, std::function<void()> quit)
    : runtime(runtime), client(client), quit(std::move(quit)), session(client) {
    state.text = text;
}

ViewState TerminalConsole::view() const {
    ViewState now = state;
    now.link = client.state();
    now.cursor = *Strip::of(std::min(state.cursor.index(), client.picture().shownStrips - 1));
    now.session = session.list();
    if (runtime.now() - knownAt > memoryOfPosition) now.lastOffset.reset();
    if (!inControl()) now.held.fill(false);
    return now;
}

void TerminalConsole::look(int tracksOnPage) {
    session.setLines(tracksOnPage);
    if (!client.picture().bankOffset) return;
    state.lastOffset = client.picture().bankOffset;
    knownAt = runtime.now();
}

void TerminalConsole::press(Key key) {
    state.cursor = view().cursor;
    if (key.special == SpecialKey::interrupt) {
        quit();
    } else if (std::exchange(state.help, false)) {
        return;
    } else if (state.prompt != Prompt::none) {
        pressInPrompt(key);
    } else if (key.special == SpecialKey::redraw) {
        client.askForEverything();
    } else if (state.page == Page::session) {
        pressOnSession(key);
    } else {
        pressOnStrips(key);
    }
}

// ---- The pages

void TerminalConsole::pressOnStrips(Key key) {
    if (key.special != SpecialKey::none) return pressSpecial(key.special);
    if (pressCommonKey(key.character)) return;
    if (key.character >= '0' && key.character <= '9') {
        moveCursorTo(key.character == '0' ? 9 : key.character - '1');
    } else if (inControl() && !pressMoveKey(key.character)) {
        pressCharacter(key.character);
    }
}

void TerminalConsole::pressOnSession(Key key) {
    if (session.pressListKey(key) || pressCommonKey(key.character)) return;
    if (!inControl() || pressMoveKey(key.character)) return;
    if (key.character == 'f') return ask(Prompt::fader);
    session.pressCommandKey(key);
}

// The cursor stays on the same track when both pages show it.
void TerminalConsole::turnPage() {
    const auto offset = offsetOf(client.picture(), view());
    if (state.page == Page::strips) {
        state.page = Page::session;
        if (const auto track = trackOn(client.picture(), offset, state.cursor)) session.jumpTo(*track);
        return;
    }
    state.page = Page::strips;
    if (const auto strip = stripShowing(client.picture(), offset, session.list().cursor)) state.cursor = *strip;
}

void TerminalConsole::pressSpecial(SpecialKey key) {
    switch (key) {
    case SpecialKey::left:
        return moveCursor(-1);
    case SpecialKey::right:
        return moveCursor(1);
    case SpecialKey::up:
        return moveFader(coarse);
    case SpecialKey::down:
        return moveFader(-coarse);
    case SpecialKey::pageUp:
        return moveFader(page);
    case SpecialKey::pageDown:
        return moveFader(-page);
    case SpecialKey::tab:
        return moveCursorTo((state.cursor.index() + stripsPerSurface) % stripCount);
    case SpecialKey::enter:
        if (inControl()) client.send(selectPressCommand(state.cursor));
        return;
    default:
        return;
    }
}

// Handles the keys for the view and for taking control. Returns true when it was one of them.
bool TerminalConsole::pressCommonKey(char character) {
    switch (character) {
    case 'q':
        quit();
        return true;
    case '?':
        state.help = true;
        return true;
    case 'v':
        turnPage();
        return true;
    case 'T':
        client.takeOver();
        return true;
    default:
        return false;
    }
}

// Handles the keys that move the surfaces, and the automation prompt that both pages have. Returns true when it was one
// of them.
bool TerminalConsole::pressMoveKey(char character) {
    switch (character) {
    case '[':
        client.send(bankMoveCommand(Move::bankLeft));
        return true;
    case ']':
        client.send(bankMoveCommand(Move::bankRight));
        return true;
    case '{':
        client.send(bankMoveCommand(Move::channelLeft));
        return true;
    case '}':
        client.send(bankMoveCommand(Move::channelRight));
        return true;
    case 'R':
        client.send(recalibrateCommand());
        return true;
    case 'g':
        ask(Prompt::goToTrack);
        return true;
    case 'a':
        ask(Prompt::autoMode);
        return true;
    default:
        return false;
    }
}

void TerminalConsole::pressCharacter(char character) {
    const Strip strip = state.cursor;
    switch (character) {
    case '+':
        return moveFader(fine);
    case '-':
        return moveFader(-fine);
    case 'm':
        return client.send(mutePressCommand(strip));
    case 's':
        return client.send(soloPressCommand(strip));
    case 'r':
        return client.send(recArmPressCommand(strip));
    case 'i':
        return client.send(inputMonitorToggleCommand(strip));
    case ',':
        return client.send(vpotDeltaCommand(strip, -1));
    case '.':
        return client.send(vpotDeltaCommand(strip, 1));
    case 'c':
        return client.send(panSeekCommand(strip, ringCentre));
    case 'P':
        return ask(Prompt::pan);
    case 'p':
        return client.send(panModeToggleCommand());
    default:
        return;
    }
}

// ---- Prompts

void TerminalConsole::ask(Prompt prompt) {
    state.prompt = prompt;
    state.typed.clear();
}

void TerminalConsole::pressInPrompt(Key key) {
    const bool typeable =
        (key.character >= '0' && key.character <= '9') || key.character == '.' || key.character == '-';
    if (key.special == SpecialKey::escape) {
        ask(Prompt::none);
    } else if (state.prompt == Prompt::autoMode) {
        answerAutoMode(key.character);
    } else if (key.special == SpecialKey::enter) {
        answer();
    } else if (key.special == SpecialKey::backspace && !state.typed.empty()) {
        state.typed.pop_back();
    } else if (typeable && state.typed.size() < maxTyped) {
        state.typed += key.character;
    }
}

// Does nothing when the input makes no sense or this client is no longer in control.
void TerminalConsole::answer() {
    if (inControl()) {
        if (state.prompt == Prompt::goToTrack) goToTyped();
        if (state.prompt == Prompt::pan) panToTyped();
        if (state.prompt == Prompt::fader) setTypedFaders();
    }
    ask(Prompt::none);
}

void TerminalConsole::answerAutoMode(char character) {
    const auto key = autoModeKeyOf(character);
    ask(Prompt::none);
    if (!key || !inControl()) return;
    if (state.page == Page::session) return session.setAutoMode(*key);
    client.send(setAutoModeCommand(state.cursor, *key));
}

void TerminalConsole::goToTyped() {
    const auto track = wholeNumber(state.typed, 1, 65536);
    if (!track) return;
    session.jumpTo(*track - 1);
    client.send(seekBankCommand(static_cast<Member>(*track - 1)));
}

void TerminalConsole::panToTyped() {
    const auto steps = wholeNumber(state.typed, -5, 5);
    if (steps) client.send(panSeekCommand(state.cursor, static_cast<std::uint8_t>(ringCentre + *steps)));
}

void TerminalConsole::setTypedFaders() {
    const auto value = decimalNumber(state.typed);
    if (value && *value >= 0 && *value <= 100) session.setFaders(FaderValue::ofUnit(*value / 100));
}

// ---- The cursor and its fader

void TerminalConsole::moveCursor(int by) {
    moveCursorTo(state.cursor.index() + by);
}

void TerminalConsole::moveCursorTo(int index) {
    if (index >= 0 && index < client.picture().shownStrips) state.cursor = *Strip::of(index);
}

void TerminalConsole::moveFader(double by) {
    if (!inControl()) return;
    const Strip strip = state.cursor;
    if (!std::exchange(state.held[strip.slot()], true)) client.touch(strip);
    client.move(strip, FaderValue::ofUnit(client.picture().at(strip).fader.unit() + by));
    releaseLater(strip);
}

void TerminalConsole::releaseLater(Strip strip) {
    const int move = ++(*moves)[strip.slot()];
    runtime.postMainAfter(holdTime, [this, strip, move, console = std::weak_ptr(moves)] {
        const auto alive = console.lock();
        if (!alive || (*alive)[strip.slot()] != move) return;
        state.held[strip.slot()] = false;
        if (inControl()) client.release(strip);
    });
}

} // namespace lumbrine::remote
