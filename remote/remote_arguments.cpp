#include "remote/remote_arguments.h"

#include "base/decimal_number.h"
#include "remote/script_command.h"
#include "remote/words.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <fstream>
#include <utility>

namespace lumbrine::remote {
namespace {

constexpr int wrongUsage = 2;

constexpr const char* expectationHelp =
    "Lines (what --watch prints and --expect looks for; strips and tracks are counted from 1):\n"
    "  pong, busy, state connected|busy|taken-over|lost, sealed received=1200 lost=3\n"
    "  name 3 Kick            full-name 3 Kick In     fader 3 0.7200\n"
    "  pan 3 left 6 centre    pan-mode left|right     transport play=on record=off\n"
    "  bank first=1 tracks=24 strips=8                row 12 fader=0.7200 mute=off ... name=Kick comment=\n"
    "  switches 1=--- 2=MSR 3=m-r (small letters blink)\n"
    "  meters 1=0/12 ...      selects 1=on ...        monitors 1=off ...       colors 1=#ff8000 2=none ...\n"
    "  automation 1=read 2=trim+touch ...             session-automation 65=read ...\n"
    "  session-pan 65=left/6/centre 66=unknown ...\n"
    "An expectation is the beginning of a line, word by word. A word with = may pass over others: \"switches 3=M--\".\n"
    "* stands for any characters and ? for one; ~0.72 is a number within 0.005, and <, <=, >, >= compare.\n"
    "It looks at what came since the last --send, and after what met the --expect before it.\n";

std::string footer() {
    return "\nCommands for --send:\n" + scriptCommandHelp() + "\n" + expectationHelp +
           "\nExit status: 0 when every expectation was met, 1 when one was not or nothing answered, 2 for wrong "
           "usage.\n"
           "Example: lumbrine-remote 127.0.0.1:52700 --send \"touch 3\" --send \"fader 3 0.72\" --send \"release 3\" "
           "\\\n"
           "             --expect \"fader 3 ~0.72\"\n";
}

EarlyEnd misuse(const std::string& text) {
    return {wrongUsage, "lumbrine-remote: " + text + "\nRun with --help for more information.\n"};
}

using Steps = std::vector<ScriptStep>;

std::expected<ScriptStep, std::string> sendStep(const std::string& text, std::optional<std::uint64_t> token) {
    auto datagram = scriptCommand(text, token);
    if (!datagram) return std::unexpected(datagram.error());
    return SendStep{*std::move(datagram)};
}

std::expected<ScriptStep, std::string> expectStep(const std::string& text) {
    auto expectation = Expectation::of(text);
    if (!expectation) return std::unexpected(expectation.error());
    return ExpectStep{*std::move(expectation)};
}

std::expected<ScriptStep, std::string> waitStep(const std::string& text) {
    const auto duration = decimalNumber(text);
    if (!duration || *duration < 0 || *duration > 86400) return std::unexpected("not a time in seconds: " + text);
    return WaitStep{seconds(*duration)};
}

// From a file, the key is not in the list of processes.
std::optional<PairingKey> keyOf(std::string text) {
    if (text.starts_with('@')) {
        std::ifstream file(text.substr(1));
        if (!(file >> text)) return std::nullopt;
    }
    return PairingKey::parse(text);
}

// Collects one step for each use of the three options, in the order of the command line.
class StepCollector {
public:
    explicit StepCollector(CLI::App& app)
        : send(option(app, "--send", "COMMAND", "Send a command")),
          expect(option(app, "--expect", "LINE", "Wait for such a line")),
          wait(option(app, "--wait", "SECONDS", "Do nothing for a while")) {}

    std::expected<Steps, std::string> collect(const CLI::App& app, std::optional<std::uint64_t> token) {
        Steps steps;
        for (const CLI::Option* given : app.parse_order()) {
            std::expected<ScriptStep, std::string> step = std::unexpected("");
            if (given == send.option) {
                step = sendStep(send.next(), token);
            } else if (given == expect.option) {
                step = expectStep(expect.next());
            } else if (given == wait.option) {
                step = waitStep(wait.next());
            } else {
                continue;
            }
            if (!step) return std::unexpected(step.error());
            steps.push_back(*std::move(step));
        }
        return steps;
    }

private:
    struct Repeated {
        CLI::Option* option;
        std::size_t taken = 0;
        std::string next() { return option->results().at(taken++); }
    };

    static Repeated option(CLI::App& app, const std::string& name, const std::string& value, const std::string& help) {
        return {app.add_option(name, help)
                    ->type_name(value)
                    ->type_size(1)
                    ->expected(1)
                    ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)};
    }

    Repeated send;
    Repeated expect;
    Repeated wait;
};

} // namespace

std::optional<HostAndPort> hostAndPortOf(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos) return std::nullopt;
    std::string host = text.substr(0, colon);
    const auto port = wholeNumber(text.substr(colon + 1), 1, 65535);
    const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
    if (bracketed) host = host.substr(1, host.size() - 2);
    if (!port || host.empty() || (!bracketed && host.find_first_of(":[]") != std::string::npos)) return std::nullopt;
    return HostAndPort{host, static_cast<std::uint16_t>(*port)};
}

std::expected<RemoteArguments, EarlyEnd> parseArguments(const std::vector<std::string>& arguments,
                                                        const std::string& version) {
    CLI::App app("Shows a receiver's strips, names and meters in the terminal; keys or a script act on them.",
                 "lumbrine-remote");
    app.set_version_flag("--version", "lumbrine-remote " + version);
    app.footer(footer());
    std::string receiver;
    std::string timeout = "2";
    std::uint64_t token = 0;
    std::string key;
    RemoteArguments result;
    app.add_option("RECEIVER", receiver, "host:port; without it the first one found by mDNS is taken");
    StepCollector collector(app);
    app.add_option("--timeout", timeout, "How long an expectation, and the first answer, may take")
        ->type_name("SECONDS");
    app.add_flag("--watch", result.watch, "Print a line for each message; without a script until interrupted");
    const CLI::Option* tokenGiven = app.add_option("--token", token, "Name this device, as a number other than 0");
    app.add_option("--key", key, "Seal messages with the receiver's key: 26 letters and digits, or @FILE with them")
        ->type_name("KEY");
    app.add_flag("--take-over", result.takeOver, "Take control from another client");
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        return std::unexpected(EarlyEnd{0, app.help()});
    } catch (const CLI::CallForVersion& asked) {
        return std::unexpected(EarlyEnd{0, std::string(asked.what()) + "\n"});
    } catch (const CLI::ParseError& error) {
        return std::unexpected(misuse(error.what()));
    }
    if (!receiver.empty()) {
        result.receiver = hostAndPortOf(receiver);
        if (!result.receiver) return std::unexpected(misuse("not of the form host:port: " + receiver));
    }
    if (!key.empty()) {
        result.key = keyOf(key);
        if (!result.key) return std::unexpected(misuse("not a key of 26 letters and digits, nor @FILE with one"));
    }
    if (tokenGiven->count() > 0) result.token = token;
    auto steps = collector.collect(app, result.token);
    if (!steps) return std::unexpected(misuse(steps.error()));
    const auto patience = decimalNumber(timeout);
    if (!patience || *patience <= 0 || *patience > 86400)
        return std::unexpected(misuse("not a time in seconds: " + timeout));
    result.script = {*std::move(steps), seconds(*patience), result.takeOver};
    return result;
}

} // namespace lumbrine::remote
