#include "remote/terminal_app.h"

#include "remote/screen_layout.h"

#include <utility>

namespace lumbrine::remote {

TerminalApp::TerminalApp(Runtime& runtime, RemoteClient& client, Terminal& terminal, Bilingual text,
                         std::function<void()> whenQuit)
    : runtime(runtime), client(client), terminal(terminal), console(runtime, client, text, std::move(whenQuit)) {
    timer = runtime.repeatOnMain(frame, [this] { tick(); });
}

void TerminalApp::tick() {
    console.look(tracksOnPage(terminal.rows()));
    while (const auto key = terminal.poll()) {
        if (key->special == SpecialKey::redraw) {
            terminal.forget();
            drawn.reset();
        }
        console.press(*key);
    }
    ViewState view = console.view();
    view.blinkOn = runtime.now().time_since_epoch() / blink % 2 == 0;
    Canvas canvas = screenOf(client.picture(), view, terminal.rows(), terminal.columns());
    if (drawn && *drawn == canvas) return;
    terminal.draw(canvas);
    drawn = std::move(canvas);
}

} // namespace lumbrine::remote
