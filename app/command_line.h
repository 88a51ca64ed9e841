// The command-line arguments of the receiver programs: only --help and --version. Environment variables configure them.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace lumbrine {

struct ProgramInfo {
    std::string_view name;     // "lumbrine-headless"
    std::string_view version;  // "0.1.0"
    std::string_view helpText; // printed by --help
};

// The output and the exit status of a program that only answers its command line.
struct CommandLineAnswer {
    std::string output; // for standard output
    std::string error;  // for standard error
    int status;         // 0, or 2 for an unknown argument
};

// Absent when the program should run. `arguments` does not include the program's name.
std::optional<CommandLineAnswer> answerCommandLine(const ProgramInfo& program, std::span<const char* const> arguments);

} // namespace lumbrine
