#include "app/command_line.h"

namespace lumbrine {

std::optional<CommandLineAnswer> answerCommandLine(const ProgramInfo& program, std::span<const char* const> arguments) {
    if (arguments.empty()) return std::nullopt;
    const std::string_view argument = arguments.front();
    const std::string name(program.name);
    if (argument == "--help" || argument == "-h") return CommandLineAnswer{std::string(program.helpText), "", 0};
    if (argument == "--version") return CommandLineAnswer{name + " " + std::string(program.version) + "\n", "", 0};
    return CommandLineAnswer{
        "", name + ": unknown argument '" + std::string(argument) + "'\nTry '" + name + " --help'.\n", 2};
}

} // namespace lumbrine
