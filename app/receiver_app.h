// What every desktop shell has in common: the one model, what the window and the menu show of it, and what the user's
// actions do. Toolkit-free; the shell owns windows and icons and asks here.
#pragma once

#include "app/login_item.h"
#include "app/receiver_screen.h"
#include "model/receiver_model.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

// Main thread only.
class ReceiverApp {
public:
    struct Shell {
        std::function<void()> openWindow; // shows the one window and brings it before all others
        std::function<void()> refresh;    // something that is shown has changed: look soon, not now
        std::function<void()> quit;       // has the program end, after the action that asked for it
    };

    // Starts nothing.
    ReceiverApp(std::shared_ptr<ReceiverModel> receiverModel, LoginItem& item, Bilingual bilingual);
    ~ReceiverApp();
    ReceiverApp(const ReceiverApp&) = delete;
    ReceiverApp& operator=(const ReceiverApp&) = delete;

    // Who shows all this; once. Until then an action that needs it does nothing.
    void connect(Shell desktopShell);

    // The window is on the screen: the first time this starts the model, later it does nothing.
    void windowAppeared();

    void perform(ScreenAction action);

    // A line of the shell's own for the activity log.
    void tell(const std::string& line);

    // As it is now; after `release` as it was then.
    ReceiverView view() const { return receiverView(state(), text); }
    StatusMenu menu() const { return statusMenu(state(), loginOn, text); }
    const std::vector<std::string>& logLines() const { return state().logLines; }

    // Gives the model away, for the end of the program. Actions do nothing from then on.
    std::shared_ptr<ReceiverModel> release();

    const Bilingual text; // for texts of the shell's own

private:
    const PublishedState& state() const { return model ? model->published() : lastState; }
    void toggleLaunchAtLogin();

    std::shared_ptr<ReceiverModel> model;
    PublishedState lastState; // when the model has been given away
    LoginItem& loginItem;
    Shell shell{[] {}, [] {}, [] {}};
    bool loginOn; // what the toggle shows
};

} // namespace lumbrine
