// The desktop shell: the window and the status icon of one ReceiverApp.
#pragma once

#include "app/qt/receiver_window.h"
#include "app/qt/status_icon.h"
#include "app/receiver_app.h"
#include "platform/api/runtime.h"
#include "platform/qt/status_area.h"

#include <functional>
#include <memory>

class QMessageBox;

namespace lumbrine {

class AboutBox;
class ConnectBox;
class KeyKeeper;
class KeysBox;
class SessionBox;

// Main thread. Draws changes soon, at most 30 times a second. A hidden window is not drawn.
class ReceiverShell {
public:
    static constexpr Duration shortestRefresh = seconds(1.0 / 30);

    // Shows nothing yet. `quitProgram` must end the program after the current action has returned. `keys` may be null:
    // then nobody sees them.
    ReceiverShell(ReceiverApp& app, Runtime& runtime, std::function<void()> quitProgram, KeyKeeper* keys = nullptr);
    ~ReceiverShell();
    ReceiverShell(const ReceiverShell&) = delete;
    ReceiverShell& operator=(const ReceiverShell&) = delete;

    // Shows the window in front of all others. The first call starts the receiver.
    void openWindow();

    // Hides everything, for the end of the program.
    void hide();

    ReceiverWindow& receiverWindow() { return window; }
    StatusIcon& statusIcon() { return icon; }

private:
    void act(ScreenAction action);
    void windowAppeared();
    void windowClosed();
    void tellThatItGoesOn();
    void showAbout();
    void showConnect();
    void showSession();
    void showKeys();
    void refreshSoon();
    void refresh();

    ReceiverApp& app;
    Runtime& runtime;
    const std::function<void()> quitProgram;
    KeyKeeper* const keys;
    ReceiverWindow window;
    StatusIcon icon;
    StatusAreaWait statusArea;
    std::unique_ptr<QMessageBox> farewell; // shown once, when the window is closed and there is no status icon
    std::unique_ptr<AboutBox> about;
    std::unique_ptr<ConnectBox> phoneBox;
    std::unique_ptr<SessionBox> sessionBox;
    std::unique_ptr<KeysBox> keysBox;
    TimePoint lastRefresh = distantPast;
    bool refreshIsDue = false;
    const std::shared_ptr<const int> life = std::make_shared<int>(0);
};

} // namespace lumbrine
