#include "simulator/user_commands.h"

#include "base/decimal_number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <expected>
#include <optional>
#include <vector>

namespace lumbrine {

namespace {

using Failure = std::unexpected<std::string>;
using Result = std::expected<std::string, std::string>; // what to tell, or what is wrong

// The rest of a line, word by word.
class Arguments {
public:
    explicit Arguments(std::string_view line) : rest(line) { skipBlanks(); }

    std::string_view word() {
        const std::size_t length = std::min(rest.find(' '), rest.size());
        const std::string_view found = rest.substr(0, length);
        rest.remove_prefix(length);
        skipBlanks();
        return found;
    }

    std::string_view remaining() const { return rest; }
    bool atEnd() const { return rest.empty(); }

    template <typename Whole>
    std::optional<Whole> number() {
        const std::string_view digits = word();
        Whole value{};
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
        return value;
    }

    std::optional<double> within(double least, double most) {
        const auto value = decimalNumber(word());
        return value && *value >= least && *value <= most ? value : std::nullopt;
    }

    // The index in the session of a track told by its number.
    std::optional<std::size_t> trackIndex(const SimulatedSession& session) {
        const auto value = number<std::size_t>();
        if (!value || *value < 1 || *value > session.tracks().size()) return std::nullopt;
        return *value - 1;
    }

private:
    void skipBlanks() { rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size())); }

    std::string_view rest;
};

using Handler = Result (*)(SimulatedProTools&, Arguments&);

struct NamedCommand {
    std::string_view name;
    std::string_view usage; // what follows the name
    std::string_view help;
    Handler run;
};

Failure wrong() {
    return Failure("");
}

// Gives the track that is told next to `edit`, which gets its id and index.
template <typename Edit>
Result editTrack(SimulatedProTools& proTools, Arguments& arguments, Edit edit) {
    Result result = wrong();
    proTools.edit([&](SimulatedSession& session) {
        const auto index = arguments.trackIndex(session);
        if (!index) {
            result = Failure("no such track");
            return;
        }
        result = edit(session, session.tracks()[*index].id);
    });
    return result;
}

template <bool SimulatedTrack::* Flag>
Result toggle(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [](SimulatedSession& session, int id) -> Result {
        session.change(id, [](SimulatedTrack& track) { track.*Flag = !(track.*Flag); });
        return {};
    });
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

Result rename(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        if (arguments.atEnd()) return wrong();
        session.rename(id, std::string(arguments.remaining()));
        return {};
    });
}

Result comment(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        session.change(id, [&](SimulatedTrack& track) { track.comment = arguments.remaining(); });
        return {};
    });
}

Result add(SimulatedProTools& proTools, Arguments& arguments) {
    if (arguments.atEnd()) return wrong();
    SimulatedTrack track;
    track.name = arguments.remaining();
    proTools.edit([&](SimulatedSession& session) { session.add(std::move(track)); });
    return {};
}

Result insert(SimulatedProTools& proTools, Arguments& arguments) {
    const auto number = arguments.number<std::size_t>();
    if (!number || *number < 1 || arguments.atEnd()) return wrong();
    SimulatedTrack track;
    track.name = arguments.remaining();
    proTools.edit([&](SimulatedSession& session) { session.add(std::move(track), *number - 1); });
    return {};
}

Result remove(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [](SimulatedSession& session, int id) -> Result {
        session.remove(id);
        return {};
    });
}

Result move(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        const auto index = arguments.trackIndex(session);
        if (!index) return Failure("no such place");
        session.move(id, *index);
        return {};
    });
}

Result select(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [](SimulatedSession& session, int id) -> Result {
        session.select(id, false);
        return {};
    });
}

Result fader(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        const auto value = arguments.within(0, 1);
        if (!value) return wrong();
        session.change(id, [&](SimulatedTrack& track) { track.fader = FaderValue::ofUnit(*value); });
        return {};
    });
}

Result pan(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        const auto left = arguments.within(-100, 100);
        if (!left) return wrong();
        const auto right = arguments.atEnd() ? std::optional(session.find(id)->panRight) : arguments.within(-100, 100);
        if (!right) return wrong();
        session.change(id, [&](SimulatedTrack& track) {
            track.panLeft = *left;
            track.panRight = *right;
        });
        return {};
    });
}

Result automation(SimulatedProTools& proTools, Arguments& arguments) {
    constexpr std::array<std::string_view, 6> names{"read", "touch", "latch", "write", "off", "touchlatch"};
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        const auto mode = std::ranges::find(names, arguments.word());
        if (mode == names.end()) return wrong();
        session.change(id, [&](SimulatedTrack& track) {
            track.automation = static_cast<SimulatedTrack::Automation>(mode - names.begin());
        });
        return {};
    });
}

Result color(SimulatedProTools& proTools, Arguments& arguments) {
    constexpr std::size_t digits = 6;
    return editTrack(proTools, arguments, [&](SimulatedSession& session, int id) -> Result {
        const std::string_view value = arguments.word();
        if (value.size() != digits || value.find_first_not_of("0123456789abcdef") != value.npos) return wrong();
        session.change(id, [&](SimulatedTrack& track) { track.color = "#ff" + std::string(value); });
        return {};
    });
}

Result fold(SimulatedProTools& proTools, Arguments& arguments) {
    return editTrack(proTools, arguments, [](SimulatedSession& session, int id) -> Result {
        if (!session.find(id)->isFolder) return Failure("that track is no folder");
        session.change(id, [](SimulatedTrack& track) { track.closed = !track.closed; });
        return {};
    });
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

std::string trackLine(const SimulatedTrack& track, std::size_t number) {
    std::array<char, 64> values{};
    std::snprintf(values.data(), values.size(), "%4zu  %5.3f  %c%c%c%c  %s  ", number, track.fader.unit(),
                  track.mute ? 'M' : '-', track.solo ? 'S' : '-', track.recordArmed ? 'R' : '-',
                  track.selected ? '*' : '-', track.stereo ? "stereo" : "mono  ");
    return values.data() + track.name + (track.hidden ? "  (hidden)" : "");
}

Result tracks(SimulatedProTools& proTools, Arguments&) {
    std::string list;
    const SimulatedSession session = proTools.session();
    for (std::size_t i = 0; i < session.tracks().size(); ++i)
        list += (i == 0 ? "" : "\n") + trackLine(session.tracks()[i], i + 1);
    return list;
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
    NamedCommand{"hide", "TRACK", "hide a track, or show it again", toggle<&SimulatedTrack::hidden>},
    NamedCommand{"mute", "TRACK", "mute on or off", toggle<&SimulatedTrack::mute>},
    NamedCommand{"solo", "TRACK", "solo on or off", toggle<&SimulatedTrack::solo>},
    NamedCommand{"arm", "TRACK", "arm for recording, or no longer", toggle<&SimulatedTrack::recordArmed>},
    NamedCommand{"monitor", "TRACK", "input monitoring on or off", toggle<&SimulatedTrack::inputMonitor>},
    NamedCommand{"inactive", "TRACK", "make a track inactive, or active again", toggle<&SimulatedTrack::inactive>},
    NamedCommand{"color", "TRACK RRGGBB", "give a track another color, six digits of 0-9 and a-f", color},
    NamedCommand{"fold", "TRACK", "close a folder, or open it", fold},
    NamedCommand{"select", "TRACK", "select one track alone", select},
    NamedCommand{"fader", "TRACK VALUE", "move a fader, 0 to 1", fader},
    NamedCommand{"pan", "TRACK LEFT [RIGHT]", "set the pan, -100 to 100", pan},
    NamedCommand{"auto", "TRACK read|touch|latch|write|off|touchlatch", "set the automation mode", automation},
    NamedCommand{"trim", "TRACK", "automation trim on or off", toggle<&SimulatedTrack::trim>},
    NamedCommand{"open", "", "open the session", transport<&SimulatedSession::open>},
    NamedCommand{"close", "", "close the session", transport<&SimulatedSession::close>},
    NamedCommand{"silence", "SURFACE SECONDS", "neither talk to a surface nor hear it for a while", silenceSurface},
    NamedCommand{"stick", "SECONDS", "do nothing at all for a while", stick},
    NamedCommand{"release", "", "let go of the MIDI ports", release},
    NamedCommand{"grab", "", "use the MIDI ports again", grab},
    NamedCommand{"script", "busy|reset|goaway|die N|stall SECONDS|restart", "let the scripting service fail", script},
    NamedCommand{"alert", "TEXT", "show an alert on the screen", alert},
    NamedCommand{"permission", "on|off", "let other programs use the screen, or no longer", permission},
    NamedCommand{"tracks", "", "list the tracks", tracks},
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
