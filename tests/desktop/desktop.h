// For tests: a private desktop, that is an X server without a screen and optionally a panel with a status area. The
// test looks at its windows and clicks them from outside, as a user does.
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
    // Sets DISPLAY of this process for good and removes the address of the message bus, so create the object before
    // other threads run. Every wait has a limit and throws std::runtime_error when it is exceeded.
    explicit Desktop(bool withStatusArea = true);
    ~Desktop();

    // The first visible window of the program "lumbrine" with this name.
    std::optional<Window> window(const std::string& name) const;

    // The program's icon in the status area: a small window.
    std::optional<Window> icon() const;

    // The open menu or dialog. It has the program's name, like the icon.
    std::optional<Window> popup() const;

    // Clicks inside the place, never twice in a row at the same spot: two quick clicks there would be a double click.
    void click(const Place& place, int button);

    void press(const std::vector<std::string>& keys) const; // one after another, in the focused window

    const XServer& screen() const { return *server; }

private:
    interop::ChildProcess serverProcess;
    std::unique_ptr<const XServer> server;
    std::unique_ptr<interop::ChildProcess> panel;
    bool nextInUpperHalf = true;
};

} // namespace lumbrine::desktop
