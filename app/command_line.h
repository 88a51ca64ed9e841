// The few command-line arguments that the receiver programs take. They are configured by environment variables; what
// stands on the command line only asks about the program.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace lumbrine {

struct ProgramInfo {
    std::string_view name;     // "lumbrine-headless"
    std::string_view version;  // "0.1.0"
    std::string_view helpText; // what --help prints
};

// What a program that was asked something prints, and the exit status it then ends with.
struct CommandLineAnswer {
    std::string output; // for standard output
    std::string error;  // for standard error
    int status;         // 0, or 2 for an argument that is not known
};

// Absent when there is nothing to answer and the program should run. `arguments` are those behind the program's name.
std::optional<CommandLineAnswer> answerCommandLine(const ProgramInfo& program, std::span<const char* const> arguments);

} // namespace lumbrine
