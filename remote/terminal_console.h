// What the keys do: each becomes a command to the receiver or a change of the view. While another client is in control,
// only the keys that need no control do anything. The keys of the list of tracks: session_console.h.
//
// A fader that is moved by key is touched at the first key and released a moment after the last one.
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
    static constexpr Duration memoryOfPosition = seconds(1.0); // how long a lost position still counts

    // Main thread only. `whenQuit` is called from `press`.
    TerminalConsole(Runtime& rt, RemoteClient& remoteClient, std::function<void()> whenQuit);

    void press(Key key);

    // What people see as the other end.
    void setReceiver(std::string name) { state.receiver = std::move(name); }

    // Before every page that is drawn: how many tracks of the session it has room for.
    void look(int tracksOnPage);

    // With the link and the cursor as they are now; the cursor is always on a shown strip.
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
    TimePoint knownAt = distantPast; // when the position was last known

    // How often each fader was moved; a release that was asked for before the last move does nothing. Gone with the
    // console.
    std::shared_ptr<std::array<int, stripCount>> moves = std::make_shared<std::array<int, stripCount>>();
};

} // namespace lumbrine::remote
