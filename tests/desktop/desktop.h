// A desktop of the test's own: an X server without a screen, and if wanted a panel with a status area. What is on it is
// looked at and clicked from outside, as a user would.
//
//     Desktop desktop;
//     ChildProcess program({LUMBRINE_BIN_DIR "/lumbrine"}, {.environment = ...}); // finds the display
//     waitUntil([&] { return desktop.window("Lumbrine — Receiver").has_value(); });
#pragma once

#include "tests/interop/child_process.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine::desktop {

struct Place {
    int x;
    int y;
    int width;
    int height;
};

struct Window {
    std::string id;
    std::string name;
    Place place;
};

class Desktop {
public:
    // Sets DISPLAY of this process for its whole life and takes the message bus away from it: make the object before
    // other threads run. Every wait has a limit and throws std::runtime_error when it is over.
    explicit Desktop(bool withStatusArea = true);
    ~Desktop();

    // The visible windows of the program "lumbrine".
    std::vector<Window> windows() const;

    // The first of them with that name.
    std::optional<Window> window(const std::string& name) const;

    // Those of the status area are small.
    std::optional<Window> icon() const;

    // Menus and dialogs have the program's name, as the icon has.
    std::optional<Window> popup() const;

    void click(const Place& place, int button) const;       // in the middle of it
    void press(const std::vector<std::string>& keys) const; // one after another, where the keyboard goes
    void focus(const Window& window) const;                 // the keyboard goes there
    double contrast(const Place& place) const;              // brightest less darkest of its pixels, 0-1

private:
    std::unique_ptr<interop::ChildProcess> server;
    std::unique_ptr<interop::ChildProcess> panel;
};

} // namespace lumbrine::desktop
