#include "tools/blackbox/blackbox_arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>
#include <vector>

namespace lumbrine::blackbox {

namespace {

constexpr int wrongUsage = 2;

std::map<std::string, Topic> topicsByName() {
    std::map<std::string, Topic> topics;
    for (std::size_t i = 0; i < topicNames.size(); ++i)
        topics[std::string(topicNames[i])] = static_cast<Topic>(i);
    return topics;
}

} // namespace

std::expected<BlackboxArguments, BlackboxAnswer> readBlackboxArguments(std::span<const char* const> arguments,
                                                                       const std::string& version) {
    BlackboxArguments read;
    int strip = 0;
    std::vector<std::string> kinds;
    CLI::App program("Reads what the Lumbrine receiver recorded: everything that crossed its network socket, its MIDI\n"
                     "ports, its connection to the scripting service and the screen, and its log.",
                     "lumbrine-blackbox");
    program.set_version_flag("--version", version);
    program.require_subcommand(1);
    program.add_option("-f,--file", read.recording, "the recording, or a copy of it; otherwise this user's own")
        ->type_name("FILE");

    CLI::App* const show = program.add_subcommand("show", "print the records as lines");
    show->add_option("--from", read.from, "not before this time: [YYYY-MM-DD ]HH:MM[:SS]")->type_name("TIME");
    show->add_option("--to", read.to, "not after this time")->type_name("TIME");
    const CLI::Option* const stripOption =
        show->add_option("--strip", strip, "only what is about this strip, 1 to 16")->check(CLI::Range(1, 16));
    const auto names = topicsByName();
    show->add_option("--kind", kinds, "only these: datagrams, midi, scripting, screen, log, system")
        ->delimiter(',')
        ->type_name("KIND,...")
        ->check(CLI::IsMember(names));
    show->add_flag("--follow", read.follow, "go on as the receiver does");

    const char* const redact = "without names, comments and addresses";
    show->add_flag("--redact", read.redacted, redact);

    CLI::App* const save = program.add_subcommand("save", "write a compressed copy");
    save->add_flag("--redact", read.redacted, redact);
    save->add_option("COPY", read.copy, "the file to write")->required();
    const CLI::App* const stats = program.add_subcommand("stats", "print how fast and how completely everything went");

    const CLI::App* const facts = program.add_subcommand("facts", "print what the recording tells of the host's rules");

    CLI::App* const pcap = program.add_subcommand("pcap", "write datagrams and MIDI as pcapng, for Wireshark");
    pcap->add_flag("--redact", read.redacted, redact);
    pcap->add_option("COPY", read.copy, "the file to write")->required();

    CLI::App* const report =
        program.add_subcommand("report", "write a copy without names for those who help, with what the receiver says");
    report->add_option("COPY", read.copy, "the file to write")->required();
    CLI::App* const replay =
        program.add_subcommand("replay", "play the recording to this version of the receiver, and compare");
    replay->add_option("FILE", read.recording, "the recording, as with -f");

    std::vector<std::string> words(arguments.begin(), arguments.end());
    std::ranges::reverse(words); // the order that the library's parser takes
    try {
        program.parse(std::move(words));
    } catch (const CLI::CallForHelp&) {
        return std::unexpected(BlackboxAnswer{program.help("", CLI::AppFormatMode::All), 0});
    } catch (const CLI::CallForVersion&) {
        return std::unexpected(BlackboxAnswer{"lumbrine-blackbox " + version + "\n", 0});
    } catch (const CLI::ParseError& error) {
        return std::unexpected(BlackboxAnswer{"lumbrine-blackbox: " + std::string(error.what()) +
                                                  "\nRun with --help for more information.\n",
                                              wrongUsage});
    }
    if (save->parsed()) read.command = BlackboxArguments::Command::save;
    if (pcap->parsed()) read.command = BlackboxArguments::Command::pcap;
    if (replay->parsed()) read.command = BlackboxArguments::Command::replay;
    if (facts->parsed()) read.command = BlackboxArguments::Command::facts;
    if (report->parsed()) read.command = BlackboxArguments::Command::report;
    if (stats->parsed()) read.command = BlackboxArguments::Command::stats;
    if (stripOption->count() > 0) read.strip = strip - 1;
    for (const std::string& kind : kinds)
        read.topics.insert(names.at(kind));
    return read;
}

} // namespace lumbrine::blackbox
