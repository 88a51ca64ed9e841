#include "simulator/user_commands.h"

#include "simulator/user_session_commands.h"
#include "simulator/user_track_commands.h"

#include <algorithm>
#include <array>

namespace lumbrine {

namespace {

using namespace user_command;
using Handler = Result (*)(SimulatedProTools&, Arguments&);

struct NamedCommand {
    std::string_view name;
    std::string_view usage; // the arguments
    std::string_view help;
    Handler run;
};

template <bool SimulatedTrack::* Flag>
Result toggleFlag(SimulatedProTools& proTools, Arguments& arguments) {
    return toggle(proTools, arguments, Flag);
}

template <void (SimulatedSession::*Act)()>
Result transport(SimulatedProTools& proTools, Arguments&) {
    proTools.edit([](SimulatedSession& session) { (session.*Act)(); });
    return {};
}

template <BankButton Left, BankButton Right>
Result bank(SimulatedProTools& proTools, Arguments& arguments) {
    const std::string_view direction = arguments.word();
    if (direction != "left" && direction != "right") return wrong();
    proTools.bank(direction == "left" ? Left : Right);
    return {};
}

Result scroll(SimulatedProTools& proTools, Arguments& arguments) {
    const auto first = arguments.number<int>();
    if (!first || *first < 1) return wrong();
    proTools.scrollTo(*first - 1);
    return {};
}

Result spoilWire(SimulatedProTools& proTools, std::string_view name, Arguments& arguments) {
    constexpr std::array<std::string_view, 3> names{"reset", "goaway", "die"};
    constexpr std::array faults{WireFault::reset, WireFault::goAway, WireFault::die};
    const auto* const found = std::ranges::find(names, name);
    const auto calls = arguments.number<int>();
    if (found == names.end() || !calls || *calls < 1) return wrong();
    WireFaults& wire = proTools.scripting().wireFaults();
    if (!wire.inUse()) return Failure("this wire has no faults; start with --faulty-wire");
    wire.next(faults[static_cast<std::size_t>(found - names.begin())], *calls);
    return {};
}

Result script(SimulatedProTools& proTools, Arguments& arguments) {
    const std::string_view fault = arguments.word();
    if (fault == "busy") {
        const auto requests = arguments.number<int>();
        if (!requests || *requests < 1) return wrong();
        proTools.scripting().refuseNext(*requests);
    } else if (fault == "stall") {
        const auto time = arguments.within(0, 3600);
        if (!time) return wrong();
        proTools.scripting().stall(seconds(*time));
    } else if (fault == "restart" && arguments.atEnd()) {
        proTools.scripting().restart();
    } else {
        return spoilWire(proTools, fault, arguments);
    }
    return {};
}

Result silenceSurface(SimulatedProTools& proTools, Arguments& arguments) {
    const auto surface = arguments.number<int>();
    const auto time = arguments.within(0, 3600);
    if (!surface || *surface < 1 || *surface > proTools.options.surfaces || !time) return wrong();
    proTools.silence(*surface - 1, seconds(*time));
    return {};
}

Result stick(SimulatedProTools& proTools, Arguments& arguments) {
    const auto time = arguments.within(0, 3600);
    if (!time) return wrong();
    proTools.stick(seconds(*time));
    return {};
}

Result release(SimulatedProTools& proTools, Arguments&) {
    proTools.releasePorts();
    return {};
}

Result grab(SimulatedProTools& proTools, Arguments&) {
    proTools.grabPorts();
    return {};
}

Result alert(SimulatedProTools& proTools, Arguments& arguments) {
    if (arguments.atEnd()) return wrong();
    proTools.arrangeScreen(
        [&](SimulatedScreen& screen, TimePoint) { screen.showAlert({std::string(arguments.remaining())}); });
    return {};
}

Result permission(SimulatedProTools& proTools, Arguments& arguments) {
    const std::string_view state = arguments.word();
    if (state != "on" && state != "off") return wrong();
    proTools.screen().setTrusted(state == "on");
    return {};
}

Result help(SimulatedProTools&, Arguments&) {
    return userCommandHelp();
}

constexpr std::array commands{
    NamedCommand{"play", "", "start the transport", transport<&SimulatedSession::play>},
    NamedCommand{"stop", "", "stop the transport", transport<&SimulatedSession::stop>},
    NamedCommand{"record", "", "make ready to record, or punch in and out", transport<&SimulatedSession::record>},
    NamedCommand{"bank", "left|right", "move by the width of the bank",
                 bank<BankButton::bankLeft, BankButton::bankRight>},
    NamedCommand{"channel", "left|right", "move by one track", bank<BankButton::channelLeft, BankButton::channelRight>},
    NamedCommand{"scroll", "N", "let the bank begin at the Nth shown track", scroll},
    NamedCommand{"rename", "TRACK NAME", "give a track another name", rename},
    NamedCommand{"comment", "TRACK [TEXT]", "give a track another comment, or none", comment},
    NamedCommand{"add", "NAME", "add a track at the end", add},
    NamedCommand{"insert", "N NAME", "add a track as the Nth", insert},
    NamedCommand{"remove", "TRACK", "remove a track", remove},
    NamedCommand{"move", "TRACK N", "make a track the Nth", move},
    NamedCommand{"hide", "TRACK", "hide a track, or show it again", toggleFlag<&SimulatedTrack::hidden>},
    NamedCommand{"mute", "TRACK", "mute on or off", toggleFlag<&SimulatedTrack::mute>},
    NamedCommand{"solo", "TRACK", "solo on or off", toggleFlag<&SimulatedTrack::solo>},
    NamedCommand{"arm", "TRACK", "arm for recording, or no longer", toggleFlag<&SimulatedTrack::recordArmed>},
    NamedCommand{"monitor", "TRACK", "input monitoring on or off", toggleFlag<&SimulatedTrack::inputMonitor>},
    NamedCommand{"inactive", "TRACK", "make a track inactive, or active again", toggleFlag<&SimulatedTrack::inactive>},
    NamedCommand{"color", "TRACK RRGGBB", "give a track another color, six digits of 0-9 and a-f", color},
    NamedCommand{"fold", "TRACK", "close a folder, or open it", fold},
    NamedCommand{"select", "TRACK", "select one track alone", select},
    NamedCommand{"fader", "TRACK VALUE", "move a fader, 0 to 1", fader},
    NamedCommand{"pan", "TRACK LEFT [RIGHT]", "set the pan, -100 to 100", pan},
    NamedCommand{"auto", "TRACK read|touch|latch|write|off|touchlatch", "set the automation mode", automation},
    NamedCommand{"trim", "TRACK", "automation trim on or off", toggleFlag<&SimulatedTrack::trim>},
    NamedCommand{"session", sessionUsage, "open or close the session, exchange it for another, save it", session},
    NamedCommand{"dialog", dialogUsage, "show a dialog that holds up everything, or close it", dialog},
    NamedCommand{"silence", "SURFACE SECONDS", "neither talk to a surface nor hear it for a while", silenceSurface},
    NamedCommand{"stick", "SECONDS", "do nothing at all for a while", stick},
    NamedCommand{"release", "", "let go of the MIDI ports", release},
    NamedCommand{"grab", "", "use the MIDI ports again", grab},
    NamedCommand{"script", "busy|reset|goaway|die N|stall SECONDS|restart", "let the scripting service fail", script},
    NamedCommand{"alert", "TEXT", "show an alert on the screen", alert},
    NamedCommand{"permission", "on|off", "let other programs use the screen, or no longer", permission},
    NamedCommand{"tracks", "", "list the tracks", list},
    NamedCommand{"help", "", "list these commands", help},
    NamedCommand{"quit", "", "end the program", nullptr},
};

} // namespace

CommandAnswer runUserCommand(SimulatedProTools& proTools, std::string_view line) {
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r' || line.back() == ' '))
        line.remove_suffix(1);
    Arguments arguments(line);
    if (arguments.atEnd() || arguments.remaining().front() == '#') return {};

    const std::string name(arguments.word());
    const auto command = std::ranges::find(commands, std::string_view(name), &NamedCommand::name);
    if (command == commands.end()) return {"there is no command " + name + "; help lists them", false, false};
    if (command->run == nullptr) return {"", true, true};
    if (command->usage.empty() && !arguments.atEnd()) return {"usage: " + name, false, false};

    const Result result = command->run(proTools, arguments);
    if (result) return {*result, true, false};
    if (!result.error().empty()) return {result.error(), false, false};
    return {"usage: " + name + " " + std::string(command->usage), false, false};
}

std::string userCommandHelp() {
    constexpr std::size_t column = 40;
    std::string text;
    for (const NamedCommand& command : commands) {
        std::string left(command.name);
        if (!command.usage.empty()) left += " " + std::string(command.usage);
        left.resize(std::max(left.size() + 1, column), ' ');
        text += (text.empty() ? "" : "\n") + left + std::string(command.help);
    }
    return text;
}

} // namespace lumbrine
