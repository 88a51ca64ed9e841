#include "tests/desktop/desktop.h"

#include "tests/interop/waiting.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace lumbrine::desktop {

namespace {

using interop::ChildProcess;
using interop::runCommand;
using interop::waitUntil;

constexpr int largestIcon = 64;

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// What `xdotool getwindowgeometry --shell` prints: "X=0", "Y=0", "WIDTH=520", ...
int numberAfter(const std::string& text, const std::string& name) {
    const auto at = text.find("\n" + name + "=");
    return at == std::string::npos ? 0 : std::atoi(text.c_str() + at + name.size() + 2);
}

// The number of the display, on a line of its own, among complaints about numbers that are taken.
std::string displayIn(const std::string& output) {
    for (const std::string& line : linesOf(output))
        if (!line.empty() && line.find_first_not_of("0123456789") == std::string::npos) return line;
    return {};
}

} // namespace

Desktop::Desktop(bool withStatusArea)
    : server(std::make_unique<ChildProcess>(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0",
                                                                     "1280x800x24", "-nolisten", "tcp", "-noreset"})) {
    const auto ready = [this] { return !displayIn(server->output()).empty(); };
    if (!waitUntil([&] { return ready() || !server->running(); }) || !server->running())
        throw std::runtime_error("Xvfb does not start: " + server->output());
    ::setenv("DISPLAY", (":" + displayIn(server->output())).c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    if (!withStatusArea) return;
    panel = std::make_unique<ChildProcess>(std::vector<std::string>{"trayer", "--edge", "top", "--align", "right",
                                                                    "--widthtype", "request", "--height", "32",
                                                                    "--transparent", "false"});
    if (!waitUntil([] { return runCommand({"xdotool", "search", "--name", "^panel$"}).status == 0; }))
        throw std::runtime_error("trayer does not start: " + panel->output());
}

Desktop::~Desktop() = default;

std::vector<Window> Desktop::windows() const {
    std::vector<Window> found;
    for (const std::string& id :
         linesOf(runCommand({"xdotool", "search", "--onlyvisible", "--class", "lumbrine"}).output)) {
        const std::string geometry = "\n" + runCommand({"xdotool", "getwindowgeometry", "--shell", id}).output;
        const std::vector<std::string> name = linesOf(runCommand({"xdotool", "getwindowname", id}).output);
        found.push_back({id,
                         name.empty() ? "" : name.front(),
                         {numberAfter(geometry, "X"), numberAfter(geometry, "Y"), numberAfter(geometry, "WIDTH"),
                          numberAfter(geometry, "HEIGHT")}});
    }
    return found;
}

std::optional<Window> Desktop::window(const std::string& name) const {
    for (const Window& window : windows())
        if (window.name == name) return window;
    return std::nullopt;
}

std::optional<Window> Desktop::icon() const {
    for (const Window& window : windows())
        if (window.name == "Lumbrine" && window.place.width <= largestIcon && window.place.width > 1) return window;
    return std::nullopt;
}

std::optional<Window> Desktop::popup() const {
    for (const Window& window : windows())
        if (window.name == "Lumbrine" && window.place.width > largestIcon) return window;
    return std::nullopt;
}

void Desktop::click(const Place& place, int button) const {
    runCommand({"xdotool", "mousemove", std::to_string(place.x + place.width / 2),
                std::to_string(place.y + place.height / 2), "click", std::to_string(button)});
}

void Desktop::press(const std::vector<std::string>& keys) const {
    for (const std::string& key : keys)
        runCommand({"xdotool", "key", key});
}

void Desktop::focus(const Window& window) const {
    runCommand({"xdotool", "windowfocus", "--sync", window.id});
}

double Desktop::contrast(const Place& place) const {
    const std::string part = std::to_string(place.width) + "x" + std::to_string(place.height) + "+" +
                             std::to_string(place.x) + "+" + std::to_string(place.y);
    const std::string range = runCommand({"sh", "-c",
                                          "import -window root -crop " + part +
                                              " png:- | convert - -colorspace Gray -format "
                                              "'%[fx:maxima-minima]' info:"})
                                  .output;
    return std::atof(range.c_str());
}

} // namespace lumbrine::desktop
