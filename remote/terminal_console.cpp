#include "remote/terminal_console.h"

#include "remote/command_builder.h"
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

TerminalConsole::TerminalConsole(Runtime& rt, RemoteClient& remoteClient, std::function<void()> whenQuit)
    : runtime(rt), client(remoteClient), quit(std::move(whenQuit)) {}

ViewState TerminalConsole::view() const {
    ViewState now = state;
    now.link = client.state();
    now.cursor = *Strip::of(std::min(state.cursor.index(), client.picture().shownStrips - 1));
    if (!inControl()) now.held.fill(false);
    return now;
}

void TerminalConsole::press(Key key) {
    state.cursor = view().cursor;
    if (key.special == SpecialKey::interrupt) {
        quit();
    } else if (std::exchange(state.help, false)) {
        return;
    } else if (state.prompt != Prompt::none) {
        pressInPrompt(key);
    } else if (key.special != SpecialKey::none) {
        pressSpecial(key.special);
    } else {
        pressCharacter(key.character);
    }
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
    case SpecialKey::redraw:
        return client.askForEverything();
    default:
        return;
    }
}

// The keys that act on the view, or on who is in control. True when it was one of them.
bool TerminalConsole::pressViewKey(char character) {
    if (character >= '0' && character <= '9') {
        moveCursorTo(character == '0' ? 9 : character - '1');
        return true;
    }
    switch (character) {
    case 'q':
        quit();
        return true;
    case '?':
        state.help = true;
        return true;
    case 'T':
        client.takeOver();
        return true;
    default:
        return false;
    }
}

void TerminalConsole::pressCharacter(char character) {
    if (pressViewKey(character) || !inControl()) return;
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
    case 'p':
        return client.send(panModeToggleCommand());
    case '[':
        return client.send(bankMoveCommand(Move::bankLeft));
    case ']':
        return client.send(bankMoveCommand(Move::bankRight));
    case '{':
        return client.send(bankMoveCommand(Move::channelLeft));
    case '}':
        return client.send(bankMoveCommand(Move::channelRight));
    case 'R':
        return client.send(recalibrateCommand());
    case 'g':
        state.prompt = Prompt::goToTrack;
        return;
    case 'a':
        state.prompt = Prompt::autoMode;
        return;
    default:
        return;
    }
}

void TerminalConsole::pressInPrompt(Key key) {
    const bool digit = key.character >= '0' && key.character <= '9';
    if (key.special == SpecialKey::escape) {
        state.prompt = Prompt::none;
    } else if (state.prompt == Prompt::autoMode) {
        setAutoMode(key.character);
    } else if (key.special == SpecialKey::enter) {
        goToTyped();
    } else if (key.special == SpecialKey::backspace && !state.typed.empty()) {
        state.typed.pop_back();
    } else if (digit && state.typed.size() < maxTyped) {
        state.typed += key.character;
    }
    if (state.prompt == Prompt::none) state.typed.clear();
}

void TerminalConsole::goToTyped() {
    state.prompt = Prompt::none;
    const auto track = wholeNumber(state.typed, 1, 65536);
    if (track && inControl()) client.send(seekBankCommand(static_cast<Member>(*track - 1)));
}

void TerminalConsole::setAutoMode(char character) {
    state.prompt = Prompt::none;
    const auto key = autoModeKeyOf(character);
    if (key && inControl()) client.send(setAutoModeCommand(state.cursor, *key));
}

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
