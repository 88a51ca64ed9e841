// The desktop shell: the window and the status icon around one ReceiverApp.
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

// Main thread. Shows changes soon, and never more than 30 times a second; in the window nothing at all while it is
// hidden.
class ReceiverShell {
public:
    static constexpr Duration shortestRefresh = seconds(1.0 / 30);

    // Shows nothing yet. `quit` has the program end, after the action that asked for it.
    ReceiverShell(ReceiverApp& receiverApp, Runtime& rt, std::function<void()> quit);
    ~ReceiverShell();
    ReceiverShell(const ReceiverShell&) = delete;
    ReceiverShell& operator=(const ReceiverShell&) = delete;

    // Shows the window before all others. The first time this starts the receiver.
    void openWindow();

    // The program is about to end: nothing is on the screen any more.
    void hide();

    ReceiverWindow& receiverWindow() { return window; }
    StatusIcon& statusIcon() { return icon; }

private:
    void act(ScreenAction action);
    void windowAppeared();
    void windowClosed();
    void tellThatItGoesOn();
    void refreshSoon();
    void refresh();

    ReceiverApp& app;
    Runtime& runtime;
    const std::function<void()> quitProgram;
    ReceiverWindow window;
    StatusIcon icon;
    StatusAreaWait statusArea;
    std::unique_ptr<QMessageBox> farewell; // told once, where there is no place for the icon
    TimePoint lastRefresh = distantPast;
    bool refreshIsDue = false;
    const std::shared_ptr<const int> life = std::make_shared<int>(0);
};

} // namespace lumbrine
