// Looks at an X server's screen over a connection of its own: a look costs some messages to the server instead of some
// processes, so that tests which look often stay quick on a busy machine.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct xcb_connection_t;

namespace lumbrine::desktop {

struct Place {
    int x;
    int y;
    int width;
    int height;
};

struct Window {
    std::uint32_t id;
    std::string name;
    Place place;
};

class XServer {
public:
    // ":99"; throws std::runtime_error when no server answers there.
    explicit XServer(const std::string& display);
    ~XServer();

    // The visible windows of the program with that name. One that goes during the look is left out.
    std::vector<Window> windowsOf(std::string_view program) const;

    // Whether a panel takes icons in.
    bool hasStatusArea() const;

    // Whether clicks go to one program alone, wherever they are made, as they do while a menu is open.
    bool pointerIsTaken() const;

    // Brightest less darkest of these pixels, 0-1; 0 when not all of them are on the screen.
    double contrast(const Place& place) const;

    // Sends the keyboard to that window; false when it is not visible any more.
    bool focus(const Window& window) const;

private:
    std::uint32_t atom(std::string_view name) const;
    std::string property(std::uint32_t window, std::uint32_t name) const;
    void collect(std::uint32_t parent, std::string_view program, std::vector<Window>& found) const;
    Place placeOf(std::uint32_t window) const;

    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection;
    const std::uint32_t root;
    const std::uint32_t utf8Name;
    const std::uint32_t statusArea;
};

} // namespace lumbrine::desktop
