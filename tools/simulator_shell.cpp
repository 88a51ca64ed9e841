#include "tools/simulator_shell.h"

#include "simulator/status_line.h"
#include "simulator/user_commands.h"

#include <utility>

namespace lumbrine {

namespace {

constexpr std::string_view clearLine = "\r\x1B[K";

} // namespace

SimulatorShell::SimulatorShell(SimulatedProTools& proTools, bool terminal, std::function<void(std::string_view)> print)
    : proTools(proTools), terminal(terminal), print(std::move(print)) {}

void SimulatorShell::tick() {
    const std::string status = statusLine(proTools.snapshot(), terminal);
    if (status == shown) return;
    shown = status;
    print(terminal ? std::string(clearLine) + shown : shown + "\n");
}

bool SimulatorShell::handle(std::string_view line) {
    const CommandAnswer answer = runUserCommand(proTools, line);
    if (!answer.text.empty()) say(answer.text);
    return !answer.quit;
}

void SimulatorShell::end() {
    if (terminal) print("\n");
}

void SimulatorShell::say(const std::string& text) {
    if (!terminal) {
        print(text + "\n");
        return;
    }
    print(std::string(clearLine) + text + "\n" + shown);
}

} // namespace lumbrine
