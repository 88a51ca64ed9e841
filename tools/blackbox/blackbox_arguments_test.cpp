#include "tools/blackbox/blackbox_arguments.h"

namespace lumbrine::blackbox {
namespace {

auto read(const std::vector<const char*>& arguments) {
    return readBlackboxArguments(arguments, "1.0");
}

TEST(BlackboxArguments, ChooseWhatIsShown) {
    const auto arguments = read({"-f", "evening", "show", "--from", "14:03", "--to", "14:05", "--strip", "3", "--kind",
                                 "midi,log", "--follow"});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->command, BlackboxArguments::Command::show);
    EXPECT_EQ(arguments->recording, "evening");
    EXPECT_EQ(arguments->from, "14:03");
    EXPECT_EQ(arguments->to, "14:05");
    EXPECT_EQ(arguments->strip, 2);
    EXPECT_EQ(arguments->topics, (std::set<Topic>{Topic::midi, Topic::log}));
    EXPECT_TRUE(arguments->follow);
}

TEST(BlackboxArguments, ShowEverythingOfTheUsersOwnRecordingByDefault) {
    const auto arguments = read({"show"});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->recording, "");
    EXPECT_EQ(arguments->strip, std::nullopt);
    EXPECT_TRUE(arguments->topics.empty());
}

TEST(BlackboxArguments, SaveAndCount) {
    EXPECT_EQ(read({"save", "copy"})->copy, "copy");
    EXPECT_EQ(read({"save", "copy"})->command, BlackboxArguments::Command::save);
    EXPECT_EQ(read({"pcap", "file"})->command, BlackboxArguments::Command::pcap);
    EXPECT_EQ(read({"pcap", "file"})->copy, "file");
    EXPECT_FALSE(read({"save", "copy"})->redacted);
    EXPECT_TRUE(read({"save", "--redact", "copy"})->redacted);
    EXPECT_EQ(read({"report", "file"})->command, BlackboxArguments::Command::report);
    EXPECT_EQ(read({"report", "file"})->copy, "file");
    EXPECT_EQ(read({"facts"})->command, BlackboxArguments::Command::facts);
    EXPECT_EQ(read({"replay", "evening"})->command, BlackboxArguments::Command::replay);
    EXPECT_EQ(read({"replay", "evening"})->recording, "evening");
    EXPECT_EQ(read({"stats"})->command, BlackboxArguments::Command::stats);
}

TEST(BlackboxArguments, AnswerAskedOrWrong) {
    EXPECT_EQ(read({"--version"}).error().text, "lumbrine-blackbox 1.0\n");
    EXPECT_EQ(read({"--version"}).error().status, 0);
    EXPECT_EQ(read({"--help"}).error().status, 0);
    EXPECT_EQ(read({"show", "--help"}).error().status, 0);
    for (const std::vector<const char*>& wrong : std::vector<std::vector<const char*>>{
             {}, {"play"}, {"save"}, {"show", "--strip", "17"}, {"show", "--strip", "x"}, {"show", "--kind", "noise"}})
        EXPECT_EQ(read(wrong).error().status, 2);
}

} // namespace
} // namespace lumbrine::blackbox
