// Turns each key into a command to the receiver or into a change of the view. While another client is in control, only
// the keys that need no control work. The keys of the list of tracks are in session_console.h.
//
// A fader that is moved by keys is touched at the first key and released `holdTime` after the last one.
#pragma once

#include "platform/api/runtime.h"
#include "remote/remote_client.h"
#include "remote/session_console.h"
#include "remote/terminal.h"
#include "remote/view_state.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace lumbrine::remote {

class TerminalConsole {
public:
    static constexpr Duration holdTime = seconds(0.6);
    static constexpr Duration memoryOfPosition = seconds(1.0); // how long a lost bank position is still shown

    // Main thread only. `quit` is called inside `press`.
    TerminalConsole(Runtime& runtime, RemoteClient& client, Bilingual text, std::function<void()> quit);

    void press(Key key);

    // Sets the name of the receiver on the page.
    void setReceiver(std::string name) { state.receiver = std::move(name); }

    // Call before drawing each page, with the number of session tracks that fit it.
    void look(int tracksOnPage);

    // The current view. Its cursor is always on a strip that is shown.
    ViewState view() const;

private:
    void pressOnStrips(Key key);
    void pressOnSession(Key key);
    void pressSpecial(SpecialKey key);
    void pressCharacter(char character);
    bool pressCommonKey(char character);
    bool pressMoveKey(char character);
    void turnPage();

    void ask(Prompt prompt);
    void pressInPrompt(Key key);
    void answer();
    void answerAutoMode(char character);
    void goToTyped();
    void panToTyped();
    void setTypedFaders();

    void moveCursor(int by);
    void moveCursorTo(int index);
    void moveFader(double by);
    void releaseLater(Strip strip);
    bool inControl() const { return client.state() == LinkState::connected; }

    Runtime& runtime;
    RemoteClient& client;
    const std::function<void()> quit;
    ViewState state;
    SessionConsole session;
    TimePoint knownAt = distantPast; // the last time when the bank position was known

    // The number of moves of each fader: a release that was scheduled before the last move does nothing. Expires with
    // the console.
    std::shared_ptr<std::array<int, stripCount>> moves = std::make_shared<std::array<int, stripCount>>();
};

} // namespace lumbrine::remote
