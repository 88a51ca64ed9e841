// A desktop of the test's own: an X server without a screen, and if wanted a panel with a status area. What is on it is
// looked at and clicked from outside, as a user would.
//
//     Desktop desktop;
//     ChildProcess program({LUMBRINE_BIN_DIR "/lumbrine"}, {.environment = ...}); // finds the display
//     waitUntil([&] { return desktop.window("Lumbrine — Receiver").has_value(); });
#pragma once

#include "tests/desktop/x_server.h"
#include "tests/interop/child_process.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine::desktop {

class Desktop {
public:
    // Sets DISPLAY of this process for its whole life and takes the message bus away from it: make the object before
    // other threads run. Every wait has a limit and throws std::runtime_error when it is over.
    explicit Desktop(bool withStatusArea = true);
    ~Desktop();

    // The first visible window of the program "lumbrine" with that name.
    std::optional<Window> window(const std::string& name) const;

    // Those of the status area are small.
    std::optional<Window> icon() const;

    // Menus and dialogs have the program's name, as the icon has.
    std::optional<Window> popup() const;

    // Clicks into it, never at the same spot twice in a row: two quick clicks at one spot are a double click.
    void click(const Place& place, int button);

    void press(const std::vector<std::string>& keys) const; // one after another, where the keyboard goes

    const XServer& screen() const { return *server; }

private:
    interop::ChildProcess serverProcess;
    std::unique_ptr<const XServer> server;
    std::unique_ptr<interop::ChildProcess> panel;
    bool nextInUpperHalf = true;
};

} // namespace lumbrine::desktop
