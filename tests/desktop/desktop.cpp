#include "tests/desktop/desktop.h"

#include "tests/interop/waiting.h"

#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace lumbrine::desktop {

namespace {

using interop::ChildProcess;
using interop::runCommand;
using interop::waitUntil;

constexpr int largestIcon = 64;
constexpr const char* programName = "lumbrine";

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// A number of this process's own. Left to choose, servers in different networks all take 0, and overwrite each other's
// socket and keymap, which are files named by it.
std::string ownDisplay() {
    constexpr int usual = 100; // the numbers of other servers on the computer
    constexpr int range = 30'000;
    return ":" + std::to_string(usual + ::getpid() % range);
}

// The number of the display, on a line of its own, once the server is ready.
std::string displayIn(const std::string& output) {
    for (const std::string& line : linesOf(output))
        if (!line.empty() && line.find_first_not_of("0123456789") == std::string::npos) return line;
    return {};
}

} // namespace

Desktop::Desktop(bool withStatusArea)
    : serverProcess(
          {"Xvfb", ownDisplay(), "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"}) {
    const auto ready = [this] { return !displayIn(serverProcess.output()).empty(); };
    if (!waitUntil([&] { return ready() || !serverProcess.running(); }) || !serverProcess.running())
        throw std::runtime_error("Xvfb does not start: " + serverProcess.output());
    const std::string display = ":" + displayIn(serverProcess.output());
    server = std::make_unique<XServer>(display);
    ::setenv("DISPLAY", display.c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    if (!withStatusArea) return;
    panel = std::make_unique<ChildProcess>(std::vector<std::string>{"trayer", "--edge", "top", "--align", "right",
                                                                    "--widthtype", "request", "--height", "32",
                                                                    "--transparent", "false"});
    if (!waitUntil([this] { return server->hasStatusArea(); }))
        throw std::runtime_error("trayer does not start: " + panel->output());
}

Desktop::~Desktop() = default;

std::optional<Window> Desktop::window(const std::string& name) const {
    for (const Window& window : server->windowsOf(programName))
        if (window.name == name) return window;
    return std::nullopt;
}

std::optional<Window> Desktop::icon() const {
    for (const Window& window : server->windowsOf(programName))
        if (window.name == "Lumbrine" && window.place.width <= largestIcon && window.place.width > 1) return window;
    return std::nullopt;
}

std::optional<Window> Desktop::popup() const {
    for (const Window& window : server->windowsOf(programName))
        if (window.name == "Lumbrine" && window.place.width > largestIcon) return window;
    return std::nullopt;
}

void Desktop::click(const Place& place, int button) {
    const int quarters = std::exchange(nextInUpperHalf, !nextInUpperHalf) ? 1 : 3;
    runCommand({"xdotool", "mousemove", std::to_string(place.x + place.width / 2),
                std::to_string(place.y + place.height * quarters / 4), "click", std::to_string(button)});
}

void Desktop::press(const std::vector<std::string>& keys) const {
    std::vector<std::string> command{"xdotool", "key"};
    command.insert(command.end(), keys.begin(), keys.end());
    runCommand(command);
}

} // namespace lumbrine::desktop
