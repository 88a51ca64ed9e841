#include "remote/remote_arguments.h"

namespace lumbrine::remote {
namespace {

using Arguments = std::vector<std::string>;

RemoteArguments parsed(const Arguments& arguments) {
    auto result = parseArguments(arguments, "1.2.3");
    EXPECT_TRUE(result.has_value()) << result.error().text;
    return result ? *std::move(result) : RemoteArguments{};
}

EarlyEnd ended(const Arguments& arguments) {
    const auto result = parseArguments(arguments, "1.2.3");
    EXPECT_FALSE(result.has_value());
    return result ? EarlyEnd{-1, ""} : result.error();
}

TEST(HostAndPort, AreReadFromBothFormsOfAddresses) {
    EXPECT_EQ(hostAndPortOf("127.0.0.1:52700"), (HostAndPort{"127.0.0.1", 52700}));
    EXPECT_EQ(hostAndPortOf("studio.local:1"), (HostAndPort{"studio.local", 1}));
    EXPECT_EQ(hostAndPortOf("[::1]:52700"), (HostAndPort{"::1", 52700}));
}

TEST(HostAndPort, AreAbsentWhenEitherIsMissing) {
    for (const char* text : {"", "127.0.0.1", ":52700", "a:", "a:0", "a:65536", "a:x", "::1:52700", "[]:1"})
        EXPECT_EQ(hostAndPortOf(text), std::nullopt) << text;
}

TEST(RemoteArguments, LookForAReceiverWhenNoneIsNamed) {
    const RemoteArguments arguments = parsed({});
    EXPECT_EQ(arguments.receiver, std::nullopt);
    EXPECT_FALSE(arguments.plain());
    EXPECT_EQ(arguments.token, std::nullopt);
    EXPECT_EQ(arguments.script.timeout, seconds(2));
}

TEST(RemoteArguments, KeepTheOrderOfTheSteps) {
    const auto steps =
        parsed({"a:1", "--send", "mute 3", "--expect", "busy", "--wait", "0.5", "--send", "vpot 3 -2"}).script.steps;
    ASSERT_EQ(steps.size(), 4u);
    EXPECT_EQ(std::get<SendStep>(steps[0]).datagram, (Bytes{0x01, 0x04, 0x02}));
    EXPECT_EQ(std::get<ExpectStep>(steps[1]).expectation.text(), "busy");
    EXPECT_EQ(std::get<WaitStep>(steps[2]).duration, seconds(0.5));
    EXPECT_EQ(std::get<SendStep>(steps[3]).datagram, (Bytes{0x01, 0x07, 0x02, 0xFE}));
}

TEST(RemoteArguments, TakeTheReceiverAtAnyPlace) {
    EXPECT_EQ(parsed({"--send", "mute 3", "a:1"}).receiver, (HostAndPort{"a", 1}));
    EXPECT_EQ(parsed({"--send", "mute 3", "a:1"}).script.steps.size(), 1u);
}

TEST(RemoteArguments, PutTheTokenIntoAHelloWhereverItStands) {
    const RemoteArguments arguments = parsed({"--send", "hello", "--token", "258"});
    EXPECT_EQ(arguments.token, 258u);
    EXPECT_EQ(std::get<SendStep>(arguments.script.steps.at(0)).datagram, (Bytes{0x01, 0x00, 0, 0, 0, 0, 0, 0, 1, 2}));
}

TEST(RemoteArguments, TakeAKeyOfTwentySixLetters) {
    const std::string letters = "742BCM0SCXPZA154Z02S9P89HC";
    EXPECT_EQ(parsed({"--key", letters}).key, PairingKey::parse(letters));
    EXPECT_FALSE(parsed({"--watch"}).key);
    EXPECT_EQ(ended({"--key", "742B"}).status, 2);
    EXPECT_EQ(ended({"--key", "@/nowhere"}).status, 2);
    EXPECT_THAT(ended({"--key", letters + "0"}).text, ::testing::Not(::testing::HasSubstr(letters)));
}

TEST(RemoteArguments, ShowLinesWhenWatchingOrRunningAScript) {
    EXPECT_TRUE(parsed({"--watch"}).plain());
    EXPECT_TRUE(parsed({"--wait", "1"}).plain());
    EXPECT_FALSE(parsed({"--take-over"}).plain());
}

TEST(RemoteArguments, WaitForControlWhenTakingOver) {
    EXPECT_TRUE(parsed({"--take-over", "--send", "mute 3"}).script.needsControl);
    EXPECT_FALSE(parsed({"--send", "mute 3"}).script.needsControl);
    EXPECT_EQ(parsed({"--timeout", "0.5"}).script.timeout, seconds(0.5));
}

TEST(RemoteArguments, PrintHelpAndVersionWithSuccess) {
    EXPECT_EQ(ended({"--help"}).status, 0);
    EXPECT_THAT(ended({"--help"}).text, ::testing::HasSubstr("auto-mode STRIP"));
    EXPECT_THAT(ended({"--help"}).text, ::testing::HasSubstr("Exit status"));
    EXPECT_EQ(ended({"--version"}).status, 0);
    EXPECT_EQ(ended({"--version"}).text, "lumbrine-remote 1.2.3\n");
}

TEST(RemoteArguments, EndWithStatusTwoForWrongUsage) {
    for (const Arguments& wrong : {Arguments{"--nonsense"},
                                   {"nonsense"},
                                   {"a:1", "b:1"},
                                   {"--send"},
                                   {"--send", "mut 3"},
                                   {"--expect", ""},
                                   {"--wait", "soon"},
                                   {"--timeout", "0"},
                                   {"--token", "x"}})
        EXPECT_EQ(ended(wrong).status, 2) << ::testing::PrintToString(wrong);
    EXPECT_THAT(ended({"--send", "mut 3"}).text, ::testing::HasSubstr("no such command: mut"));
}

} // namespace
} // namespace lumbrine::remote
