// The full-screen view: passes keys to the console and draws the page when it has changed, at most thirty times a
// second.
#pragma once

#include "platform/api/runtime.h"
#include "remote/remote_client.h"
#include "remote/terminal.h"
#include "remote/terminal_console.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace lumbrine::remote {

class TerminalApp {
public:
    static constexpr Duration frame = seconds(1.0 / 30);
    static constexpr Duration blink = seconds(0.4); // a blinking light is on for this time and off for this time

    // Main thread only. Starts drawing. The first three arguments must outlive the view; `whenQuit` must not destroy
    // it.
    TerminalApp(Runtime& runtime, RemoteClient& client, Terminal& terminal, Bilingual text,
                std::function<void()> whenQuit);

    void setReceiver(std::string name) { console.setReceiver(std::move(name)); }

private:
    void tick();

    Runtime& runtime;
    RemoteClient& client;
    Terminal& terminal;
    TerminalConsole console;
    std::optional<Canvas> drawn;
    std::unique_ptr<RepeatingTimer> timer;
};

} // namespace lumbrine::remote
