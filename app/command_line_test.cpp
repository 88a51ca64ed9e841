#include "app/command_line.h"

namespace lumbrine {
namespace {

constexpr ProgramInfo program{"lumbrine-headless", "1.2.3", "Usage: lumbrine-headless\n"};

std::optional<CommandLineAnswer> answer(const std::vector<const char*>& arguments) {
    return answerCommandLine(program, arguments);
}

TEST(CommandLine, LetsTheProgramRunWithoutArguments) {
    EXPECT_FALSE(answer({}).has_value());
}

TEST(CommandLine, PrintsHelpAndEndsWell) {
    EXPECT_EQ(answer({"--help"})->output, "Usage: lumbrine-headless\n");
    EXPECT_EQ(answer({"-h"})->status, 0);
}

TEST(CommandLine, PrintsNameAndVersion) {
    EXPECT_EQ(answer({"--version"})->output, "lumbrine-headless 1.2.3\n");
    EXPECT_EQ(answer({"--version"})->status, 0);
}

TEST(CommandLine, RefusesWhatItDoesNotKnowWithStatusTwo) {
    const auto refused = answer({"--port=5000"});
    EXPECT_EQ(refused->status, 2);
    EXPECT_EQ(refused->output, "");
    EXPECT_EQ(refused->error, "lumbrine-headless: unknown argument '--port=5000'\nTry 'lumbrine-headless --help'.\n");
}

TEST(CommandLine, RefusesAnEmptyArgument) {
    EXPECT_EQ(answer({""})->status, 2);
}

} // namespace
} // namespace lumbrine
