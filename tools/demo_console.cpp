#include "tools/demo_console.h"

#include "simulator/user_commands.h"

#include <utility>

namespace lumbrine {

namespace {

const std::string reconnectHelp =
    "reconnect                               have the receiver make Pro Tools use the MIDI ports\n";

} // namespace

DemoConsole::DemoConsole(SimulatedProTools& proTools, std::function<void()> reconnect, std::function<void()> end,
                         std::function<void(const std::string&)> print, Bilingual text)
    : proTools(proTools), reconnect(std::move(reconnect)), end(std::move(end)), print(std::move(print)), text(text) {
    proTools.screen().onPress([write = this->print](const std::string& what) { write("Pro Tools: " + what); });
}

void DemoConsole::handle(const std::string& line) const {
    const std::string command = line.substr(0, line.find_last_not_of(" \r") + 1);
    if (command == "reconnect") return reconnect();
    if (command == "help") return print(reconnectHelp + userCommandHelp());
    const CommandAnswer answer = runUserCommand(proTools, command);
    if (!answer.text.empty()) {
        print(answer.text);
    } else if (!command.empty() && !answer.quit) {
        print(text("Pro Tools' user: ", "Pro Tools での操作: ") + command);
    }
    if (answer.quit) end();
}

std::string demoCommandHelp() {
    return reconnectHelp + "help                                    list what Pro Tools' user may do";
}

} // namespace lumbrine
