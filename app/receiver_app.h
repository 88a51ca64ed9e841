// The part of the desktop application that all shells share: it owns the model, computes the contents of window and
// menu from it, and performs the user's actions. It uses no toolkit; the shell owns windows and icons.
#pragma once

#include "app/about_text.h"
#include "app/client_name.h"
#include "app/connect_text.h"
#include "app/log_record.h"
#include "app/login_item.h"
#include "app/receiver_screen.h"
#include "app/session_page.h"
#include "app/set_up_card.h"
#include "model/receiver_model.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

// Main thread only.
class ReceiverApp {
public:
    struct Shell {
        std::function<void()> openWindow;          // shows the window in front of all others
        std::function<void()> refresh;             // the contents have changed: draw soon, but not inside this call
        std::function<void()> quit;                // ends the program after the current action has returned
        std::function<void()> showAbout = [] {};   // the box with `about`
        std::function<void()> showConnect = [] {}; // the box with `connection`
        std::function<void()> showSession = [] {}; // the list with `session`
    };

    // What the shell knows of its surroundings.
    using Saved = std::expected<void, std::string>;

    struct Surroundings {
        Runtime& runtime;
        HostSystem system = HostSystem::linuxDesktop;
        std::string version = {};    // of the program: "0.1.0"
        std::string systemName = {}; // "Debian GNU/Linux 12"
        std::function<std::vector<std::string>()> addresses = [] { return std::vector<std::string>(); };
        // The address of the page for browsers, empty without one: by this computer's address and the receiver's port.
        std::function<std::string(const std::string& host, std::uint16_t port)> page =
            [](const std::string&, std::uint16_t) { return std::string(); };
        HostNames* hosts = nullptr; // where phones can be asked for their names
        // Writes a file for those who help, or says why not. Any thread. Empty where nothing is recorded.
        std::function<Saved(const std::string& file, const std::string& diagnosis)> saveReport = {};
        std::function<std::string()> timeOfDay = [] { return std::string(); }; // "14:03:59"
    };

    // Does not start the model; windowAppeared does.
    ReceiverApp(std::shared_ptr<ReceiverModel> model, LoginItem& loginItem, Bilingual text, Surroundings surroundings);
    ~ReceiverApp();
    ReceiverApp(const ReceiverApp&) = delete;
    ReceiverApp& operator=(const ReceiverApp&) = delete;

    // Attaches the shell. Until then actions that need a shell do nothing. A later call replaces the shell.
    void connect(Shell desktopShell);

    // Called by the shell when the window is on the screen, or when it would be if the user had not asked for a start
    // without window. The first call starts the model; later ones do nothing.
    void windowAppeared();

    void perform(ScreenAction action);

    // Adds a line of the shell to the activity log.
    void tell(const std::string& line);

    // The current contents; after `release`, the contents at that time.
    ReceiverView view() const;
    StatusMenu menu() const;
    const std::vector<LogRow>& logRows() const { return onlyProblems ? record.problems() : record.rows(); }
    const PublishedState& published() const { return state(); }
    SetUpCard card() const;

    // The version and what is running, for people; and all of that with the log, for a report.
    AboutText about() const;

    // Writes the recording and what is running to a file, in the background. `done` is called on the main thread.
    void saveReport(std::string file, std::function<void(const Saved&)> done) const;

    // How a phone gets here now: reads the addresses of this computer.
    ConnectText connection();

    // The tracks that a search finds; and brings one of the session to the surfaces.
    SessionPage session(const std::string& search) const { return sessionPage(state(), search, text); }
    void seekTo(std::size_t track);

    // Gives up the model, for the end of the program. Afterwards actions do nothing.
    std::shared_ptr<ReceiverModel> release();

    const Bilingual text; // for the shell's own texts

private:
    const PublishedState& state() const { return model ? model->published() : lastState; }
    void changed();
    void recordNewLines();
    void toggleLaunchAtLogin();

    std::shared_ptr<ReceiverModel> model;
    PublishedState lastState; // the model's state at the time of `release`
    LoginItem& loginItem;
    const Surroundings surroundings;
    LogRecord record;
    SetUpWatch setUp;
    ClientName clientName;
    std::uint64_t recorded = 0; // of PublishedState::linesLogged
    Shell shell{[] {}, [] {}, [] {}};
    bool onlyProblems = false; // in the log
    bool loginOn;              // the state that the toggle shows
};

} // namespace lumbrine
