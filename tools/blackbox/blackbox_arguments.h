// The command line of lumbrine-blackbox.
#pragma once

#include "tools/blackbox/record_words.h"

#include <expected>
#include <optional>
#include <set>
#include <span>
#include <string>

namespace lumbrine::blackbox {

struct BlackboxArguments {
    enum class Command { show, save, stats, pcap, replay, facts, report };

    Command command = Command::show;
    std::string recording = {}; // empty: that of this user's receiver
    std::string from = {};
    std::string to = {};
    std::optional<int> strip = {}; // from 0
    std::set<Topic> topics = {};
    bool follow = false;
    std::string copy = {}; // of save, pcap and report: the file to write
    bool redacted = false; // without names
};

// What the program prints instead, and its exit status: help or version to standard output (0), or what is wrong with
// the command line to standard error (2).
struct BlackboxAnswer {
    std::string text;
    int status;
};

// `arguments` are those after the program's name.
std::expected<BlackboxArguments, BlackboxAnswer> readBlackboxArguments(std::span<const char* const> arguments,
                                                                       const std::string& version);

} // namespace lumbrine::blackbox
