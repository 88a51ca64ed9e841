#include "tools/simulator_arguments.h"

#include "simulator/user_commands.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <sstream>
#include <type_traits>
#include <vector>

namespace lumbrine {

namespace {

template <typename Choice>
using Names = std::map<std::string, Choice>;

const Names<EndOfSession> endsOfSession{{"fill", EndOfSession::fill}, {"blank", EndOfSession::blank}};
const Names<FaderEcho> faderEchoes{{"touched", FaderEcho::whileTouched}, {"released", FaderEcho::afterRelease}};
const Names<ShortNameRule> shortNameRules{
    {"cut", ShortNameRule::cut}, {"vowels", ShortNameRule::vowels}, {"colliding", ShortNameRule::colliding}};
const Names<NonASCIIRule> nonASCIIRules{
    {"blank", NonASCIIRule::blank}, {"question", NonASCIIRule::questionMark}, {"hui", NonASCIIRule::huiCharacters}};
const Names<RingPicture> ringPictures{{"dot", RingPicture::dot},
                                      {"boost-cut", RingPicture::boostCut},
                                      {"wrap", RingPicture::wrap},
                                      {"spread", RingPicture::spread}};
const Names<BankWidth> bankWidths{{"answering", BankWidth::answering}, {"configured", BankWidth::configured}};
const Names<Fill> fills{{"reply", Fill::replyAndReset}, {"reset", Fill::reset}, {"session", Fill::sessionOpen}};
const Names<UntouchedMove> untouchedMoves{
    {"obeyed", UntouchedMove::obeyed}, {"ignored", UntouchedMove::ignored}, {"pulled-back", UntouchedMove::pulledBack}};
const Names<ValuesShown> valueDisplays{
    {"fine", ValuesShown::withFine}, {"always", ValuesShown::always}, {"never", ValuesShown::never}};
const Names<TrimWords> trimWordings{{"prefixed", TrimWords::prefixed}, {"alone", TrimWords::alone}};
const Names<AutoLED> autoLEDs{{"24", AutoLED::green24}, {"34", AutoLED::green34}, {"unlit", AutoLED::unlit}};
const Names<RealtimeBytes> realtimeBytes{
    {"none", RealtimeBytes::none}, {"between", RealtimeBytes::between}, {"within", RealtimeBytes::within}};
const Names<PingForm> pingForms{
    {"on", PingForm::noteOn}, {"off", PingForm::noteOff}, {"off-without-velocity", PingForm::noteOffWithoutVelocity}};
const Names<bool> alignments{{"aligned", true}, {"plain", false}};
const Names<bool> redraws{{"all", true}, {"changed", false}};
const Names<AttributeSpelling> attributeSpellings{{"names", AttributeSpelling::names},
                                                  {"prefixed", AttributeSpelling::prefixedNames},
                                                  {"numbers", AttributeSpelling::numbers}};
const Names<ErrorTypeSpelling> errorTypeSpellings{{"number", ErrorTypeSpelling::number},
                                                  {"digits", ErrorTypeSpelling::digits},
                                                  {"name", ErrorTypeSpelling::name},
                                                  {"prefixed", ErrorTypeSpelling::prefixedName}};
const Names<UnknownSessionError> unknownSessionErrors{{"100", UnknownSessionError::unknownError},
                                                      {"126", UnknownSessionError::invalidParameter},
                                                      {"127", UnknownSessionError::forbidden},
                                                      {"403", UnknownSessionError::sessionID}};
const Names<DialogAnswer> dialogAnswers{
    {"refuse", DialogAnswer::refusal}, {"defer", DialogAnswer::deferral}, {"wait", DialogAnswer::silence}};
const Names<BusyError> busyErrors{
    {"not-ready", BusyError::hostNotReady}, {"timed-out", BusyError::commandTimedOut}, {"busy", BusyError::hostIsBusy}};
const Names<DumpPart> dumpParts{{"ping", DumpPart::ping},        {"displays", DumpPart::displays},
                                {"faders", DumpPart::faders},    {"rings", DumpPart::rings},
                                {"strips", DumpPart::stripLEDs}, {"globals", DumpPart::globalLEDs},
                                {"counter", DumpPart::counter}};

// Declares command-line options that write their values into a SimulatorOptions. `group` names the heading in the help
// for the options that follow.
class Reader {
public:
    Reader(CLI::App& app, SimulatorOptions& options) : app(app), options(options) {}

    void group(const std::string& name) { groupName = name; }

    template <typename Number>
    void number(const std::string& name, Number& value, const std::string& help) {
        CLI::Option* option = app.add_option(name, value, help)->capture_default_str()->group(groupName);
        if constexpr (std::is_arithmetic_v<Number>) option->type_name("N");
    }

    void milliseconds(const std::string& name, Duration& value, const std::string& help) {
        app.add_option_function<double>(
               name, [&value](const double& given) { value = seconds(given / 1000); }, help)
            ->check(CLI::Range(0.0, 1e9).description(""))
            ->type_name("MS")
            ->default_str(std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(value).count()))
            ->group(groupName);
    }

    void on(const std::string& name, bool& value, const std::string& help) {
        app.add_flag_callback(name, [&value] { value = true; }, help)->group(groupName);
    }

    void off(const std::string& name, bool& value, const std::string& help) {
        app.add_flag_callback(name, [&value] { value = false; }, help)->group(groupName);
    }

    template <typename Choice>
    void choice(const std::string& name, Choice& value, const Names<Choice>& names, const std::string& help) {
        std::string standard, all;
        for (const auto& [word, meaning] : names) {
            if (meaning == value) standard = word;
            all += (all.empty() ? "" : "|") + word;
        }
        app.add_option_function<std::string>(
               name, [&value, &names](const std::string& word) { value = names.at(word); }, help)
            ->check(CLI::IsMember(&names).description(""))
            ->type_name(all)
            ->default_str(standard)
            ->group(groupName);
    }

    void dumpOrder() {
        app.add_option_function<std::vector<std::string>>(
               "--dump-order",
               [this](const std::vector<std::string>& words) {
                   options.dumpOrder.clear();
                   for (const std::string& word : words)
                       options.dumpOrder.push_back(dumpParts.at(word));
               },
               "what a surface that appears is sent first and last")
            ->delimiter(',')
            ->check(CLI::IsMember(&dumpParts).description(""))
            ->type_name("PART,...")
            ->default_str("ping,displays,faders,rings,strips,globals,counter")
            ->group(groupName);
    }

private:
    CLI::App& app;
    SimulatorOptions& options;
    std::string groupName;
};

void declareSession(Reader& reader, CLI::App& app, SimulatorArguments& read) {
    reader.group("Session and surfaces");
    app.add_option("--tracks", read.tracks, "tracks of the session, at most 1000")
        ->check(CLI::Range(0, 1000).description(""))
        ->type_name("N")
        ->capture_default_str()
        ->group("Session and surfaces");
    reader.off("--no-session", read.options.opensSession, "open no session at the start");
    reader.on("--japanese-names", read.style.japaneseNames, "all tracks have Japanese names");
    reader.number("--folders", read.style.folders, "folders of three tracks; the first is closed, the next is open");
    reader.number("--surfaces", read.options.surfaces, "surfaces, 1 or 2");
    reader.number("--seed", read.options.seed, "decides the session and all that is left to chance");
    reader.number("--port-a", read.options.portNames[0], "MIDI ports of the first surface");
    reader.number("--port-b", read.options.portNames[1], "MIDI ports of the second surface");
}

void declarePresence(Reader& reader, SimulatorOptions& options) {
    reader.group("Presence");
    reader.milliseconds("--ping-ms", options.pingInterval, "from one ping to the next");
    reader.milliseconds("--ping-jitter-ms", options.pingJitter, "by how much a ping is late at most");
    reader.number("--late-ping-one-in", options.latePingOneIn, "one ping in so many is later still; 0 for none");
    reader.milliseconds("--late-ping-ms", options.latePing, "by how much");
    reader.milliseconds("--host-timeout-ms", options.hostTimeout, "an unanswered ping as old as this loses a surface");
    reader.off("--no-ping-without-session", options.pingWithoutSession, "do not ping while no session is open");
    reader.on("--reset-is-goodbye", options.resetIsGoodbye, "FF takes a surface away until it replies again");
    reader.choice("--fill", options.fill, fills, "what brings everything: a first reply too, FF, or a session alone");
    reader.dumpOrder();
}

void declareReaction(Reader& reader, SimulatorOptions& options) {
    reader.group("Reaction");
    reader.milliseconds("--latency-ms", options.latency, "from a surface's message to the reaction");
    reader.choice("--fader-echo", options.faderEcho, faderEchoes, "send a move back while touched, or after release");
    reader.number("--fader-bits", options.faderBits, "bits of a fader position that is sent: 9, 10 or 14");
    reader.choice("--untouched-moves", options.untouchedMove, untouchedMoves, "a fader that moves untouched");
    reader.number("--most-clicks", options.mostClicks, "clicks of one V-Pot message that count, at most 63");
    reader.off("--no-groups", options.groups, "faders of a group do not follow each other");
}

void declareShowing(Reader& reader, SimulatorOptions& options) {
    reader.group("Displays");
    reader.choice("--short-names", options.shortNames, shortNameRules, "how a name becomes four characters");
    reader.choice("--non-ascii", options.nonASCII, nonASCIIRules, "what stands for a character that is not ASCII");
    reader.number("--displays-per-sysex", options.displaysPerSysEx, "displays packed into one message, 1 to 9");
    reader.milliseconds("--mode-shown-ms", options.modeShown, "how long a new automation mode is shown");
    reader.choice("--trim-words", options.trimWords, trimWordings, "how trim is shown, as TTch or as Trim");
    reader.choice("--values", options.valuesShown, valueDisplays, "values over names: with ALT/FINE, always or never");
    reader.milliseconds("--value-shown-ms", options.valueShownFor, "how long a value is shown");
    reader.off("--no-main-display", options.mainDisplay, "leave out the main display");
    reader.off("--no-counter", options.counter, "leave out the counter");

    reader.group("LEDs, rings and meters");
    reader.choice("--auto-led", options.autoLED, autoLEDs, "the green of a track in Read, or no colour at all");
    reader.milliseconds("--led-on-ms", options.ledOn, "how long a flashing LED is lit");
    reader.milliseconds("--led-off-ms", options.ledOff, "and how long it is dark");
    reader.choice("--pan-picture", options.panPicture, ringPictures, "how a ring shows pan");
    reader.off("--no-ring-centre", options.ringMarksCentre, "do not light the LED under a ring at the centre");
    reader.number("--clicks-per-position", options.clicksPerRingPosition, "V-Pot clicks for one ring position");
    reader.number("--meter-rate", options.meterRate, "meters each second while playing, 1 to 100");
    reader.on("--clip-holds", options.clipHolds, "a meter that clipped stays there until the next play");
}

void declarePackets(Reader& reader, SimulatorOptions& options) {
    reader.group("Messages and packets");
    reader.off("--zone-select-once", options.repeatZoneSelect, "do not select the zone again before each port");
    reader.on("--running-status", options.runningStatus, "leave out the status byte within a burst");
    reader.number("--messages-per-packet", options.packets.messagesPerPacket, "messages in one packet at most");
    reader.choice("--realtime-bytes", options.packets.realtime, realtimeBytes, "where F8 and FE turn up");
    reader.choice("--ping-form", options.packets.ping, pingForms, "a ping as the note-on it is, or as a note-off");
    reader.on("--cut-sysex", options.packets.cutSysEx, "lose the end of a SysEx when a port goes");
}

void declareBanking(Reader& reader, SimulatorOptions& options) {
    reader.group("Banking");
    reader.choice("--end-of-session", options.endOfSession, endsOfSession, "fill the last bank, or leave strips blank");
    reader.choice("--bank-left", options.bankLeftAligns, alignments,
                  "whether bank left goes to multiples of the width");
    reader.choice("--bank-right", options.bankRightAligns, alignments, "and bank right");
    reader.choice("--redraw", options.redrawOnBank, redraws, "what is sent after the bank has moved");
    reader.choice("--bank-width", options.bankWidth, bankWidths, "which surfaces count for the width");
}

void declareScripting(Reader& reader, SimulatorArguments& read) {
    ScriptingOptions& options = read.options.scripting;
    reader.group("Scripting service");
    reader.number("--scripting-port", read.scriptingPort, "TCP port on 127.0.0.1, 0 for any that is free");
    reader.off("--no-scripting", read.scripting, "offer no scripting service");
    reader.choice("--attributes", options.attributes, attributeSpellings, "how attributes of four values are written");
    reader.choice("--error-types", options.errorTypes, errorTypeSpellings, "how the type of an error is written");
    reader.on("--camel-case", options.camelCase, "keys as older versions write them");
    reader.on("--empty-list-as-object", options.emptyListAsObject, "answer {} in the place of []");
    reader.on("--stats-for-pages", options.statsForPages, "tell the page as older versions do");
    reader.number("--service-version", options.version, "1 to 5; requests of a later one are refused");
    reader.choice("--unknown-session", options.unknownSession, unknownSessionErrors, "error of an unknown session id");
    reader.on("--ready-check-fails", options.readyCheckFails, "a host that is not ready fails the ready check");
    reader.on("--closed-lists-nothing", options.closedSessionListsNothing, "no session: an empty list, no failure");
    reader.choice("--in-dialog", options.inDialog, dialogAnswers, "what becomes of commands while a dialog is shown");
    reader.on("--in-progress", options.answersInProgress, "status 2 while a session is opened or saved");
    reader.on("--armed-monitors", options.armedMonitors, "arming a track implies input monitoring");
    reader.number("--page-limit", options.pageLimit, "tracks in one reply at most");
    reader.number("--miscount", options.miscount, "tracks too many in the list, or too few below 0");
    reader.on("--keep-registrations", options.registrationOutlivesConnection, "they are good on other connections");
    reader.milliseconds("--command-ms", options.commandTime, "from a request to the work on it");
    reader.milliseconds("--ready-after-ms", options.readyAfter, "from the start until the host is ready");
    reader.number("--busy-one-in", options.busyOneIn, "one request in so many finds the host busy; 0 for none");
    reader.number("--busy-burst", options.busyBurst, "requests that are then refused in a row");
    reader.choice("--busy-error", options.busyError, busyErrors, "what a busy host says");
    reader.number("--stall-one-in", options.stallOneIn, "one request in so many is served late; 0 for none");
    reader.milliseconds("--stall-ms", options.stallTime, "how late");
    reader.number("--reset-one-in", options.resetOneIn, "one call in so many has its stream reset; 0 for none");
    reader.number("--go-away-one-in", options.goAwayOneIn, "one call in so many ends its connection; 0 for none");
    reader.number("--die-one-in", options.dieOneIn, "one call in so many ends the service for a while; 0 for none");
    reader.milliseconds("--down-ms", options.downTime, "how long");
    reader.number("--bytes-at-once", options.bytesAtOnce, "send in pieces of this size; 0 for as it comes");
    reader.on("--faulty-wire", options.faultyWire, "have a wire that \"script reset\" and its like work on");
}

void declareDialogs(Reader& reader, SimulatorOptions& options) {
    reader.group("Dialogs and sessions");
    reader.off("--dialog-freezes-nothing", options.dialogFreezes, "a dialog leaves the surfaces as they are");
    reader.off("--no-ping-in-dialog", options.pingInDialog, "do not ping while a dialog is open");
    reader.milliseconds("--session-opens-ms", options.sessionOpensAfter, "until another session is open");
}

void declareFaults(Reader& reader, SimulatorOptions& options) {
    reader.group("Faults");
    reader.milliseconds("--grab-ports-after-ms", options.grabPortsAfter, "from the start until the ports are used");
    reader.on("--ports-lost", options.portsLost, "use the ports only after the command \"grab\"");
    reader.number("--drop-one-press-in", options.dropOnePressIn, "about one press in so many is lost; 0 for none");
    reader.milliseconds("--restless-user-ms", options.restlessUserEvery,
                        "a user who acts on the screen about so often; 0 for never");
}

} // namespace

std::expected<SimulatorArguments, SimulatorArgumentsAnswer>
readSimulatorArguments(std::span<const char* const> arguments) {
    SimulatorArguments read;
    CLI::App app("A simulated Pro Tools that plays through MIDI ports, for a receiver on this computer.",
                 "lumbrine-simulator");
    app.set_version_flag("--version", "lumbrine-simulator " LUMBRINE_VERSION, "print the version and end");
    app.set_help_flag("--help", "print this help and end");
    app.footer("Commands on standard input:\n" + userCommandHelp());
    app.get_formatter()->column_width(44);

    Reader reader(app, read.options);
    declareSession(reader, app, read);
    declarePresence(reader, read.options);
    declareReaction(reader, read.options);
    declareShowing(reader, read.options);
    declarePackets(reader, read.options);
    declareBanking(reader, read.options);
    declareScripting(reader, read);
    declareDialogs(reader, read.options);
    declareFaults(reader, read.options);

    try {
        // CLI11 expects the words in reverse order.
        std::vector<std::string> words(arguments.begin(), arguments.end());
        std::ranges::reverse(words);
        app.parse(words);
    } catch (const CLI::ParseError& error) {
        std::ostringstream output, complaint;
        const int status = app.exit(error, output, complaint) == 0 ? 0 : 2;
        return std::unexpected(SimulatorArgumentsAnswer{output.str(), complaint.str(), status});
    }
    if (const auto problem = problemWith(read.options))
        return std::unexpected(SimulatorArgumentsAnswer{"", "lumbrine-simulator: " + *problem + "\n", 2});
    return read;
}

} // namespace lumbrine
