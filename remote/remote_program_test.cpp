#include "platform/virtual/toy_secrets.h"
#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"
#include "remote/remote_program.h"
#include "remote/testing/scripted_receiver.h"
#include "remote/testing/wire_samples.h"

#include <chrono>

namespace lumbrine::remote {
namespace {

using namespace std::chrono_literals;
using Datagrams = std::vector<Bytes>;
using Lines = std::vector<std::string>;

// Reports the services that the test gives it, each on a separate thread.
class FakeBrowser final : public ServiceBrowser {
public:
    explicit FakeBrowser(Runtime& runtime) : runtime(runtime) {}

    std::unique_ptr<ServiceSearch> browse(const std::string& type,
                                          std::function<void(const FoundService&)> found) override {
        askedFor = type;
        if (!there) return nullptr;
        for (const FoundService& service : services)
            runtime.background(Priority::normal, [found, service] { found(service); });
        return std::make_unique<ServiceSearch>();
    }

    Runtime& runtime;
    bool there = true;
    std::vector<FoundService> services;
    std::string askedFor;
};

class RemoteProgramTest : public ::testing::Test {
protected:
    bool japanese = false;
    void run(const std::vector<std::string>& line, Terminal* terminal = nullptr) {
        auto arguments = parseArguments(line, "1.2.3");
        ASSERT_TRUE(arguments.has_value());
        program = std::make_unique<RemoteProgram>(
            RemoteSurroundings{runtime, network.host("192.168.1.7"), browser, &secrets, terminal, Bilingual(japanese),
                               [this](const std::string& text) { printed.push_back(text); },
                               [this](const std::string& text) { complaints.push_back(text); },
                               [this](int status) { endings.push_back(status); }},
            *std::move(arguments));
        program->start();
        runtime.runUntilIdle();
    }

    void say(const Bytes& datagram, Duration then = 0s) {
        receiver.send(datagram);
        runtime.runFor(then);
    }

    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    ScriptedReceiver receiver{runtime, network.host("192.168.1.2"), 52700};
    FakeBrowser browser{runtime};
    ToySecrets secrets;
    std::unique_ptr<RemoteProgram> program;
    Lines printed;
    Lines complaints;
    std::vector<int> endings;
};

TEST_F(RemoteProgramTest, EndsWithZeroWhenTheScriptWentAsExpected) {
    run({"192.168.1.2:52700", "--send", "mute 3", "--expect", "switches 3=M--"});
    EXPECT_EQ(receiver.taken(), Datagrams{hello});
    say(pong, 100ms);
    EXPECT_EQ(receiver.taken(), (Datagrams{{0x01, 0x04, 0x02}}));
    say({0x01, 0x13, 0, 0, 0, 0, 0, 0, 1, 0, 0});
    EXPECT_EQ(endings, std::vector<int>{0});
    EXPECT_TRUE(complaints.empty());
    EXPECT_TRUE(printed.empty());
}

TEST_F(RemoteProgramTest, EndsWithOneAndALineWhenAnExpectationWasNotMet) {
    run({"192.168.1.2:52700", "--expect", "busy", "--timeout", "0.5"});
    say(pong, 600ms);
    EXPECT_EQ(endings, std::vector<int>{1});
    EXPECT_EQ(complaints, Lines{"not met within 0.5 s: busy (nothing of the kind came)"});
}

TEST_F(RemoteProgramTest, EndsWithOneWhenNothingAnswers) {
    run({"192.168.1.2:52700", "--send", "mute 3"});
    runtime.runFor(2s);
    EXPECT_EQ(endings, std::vector<int>{1});
    EXPECT_EQ(complaints, Lines{"nothing answered within 2 s"});
}

TEST_F(RemoteProgramTest, RunsAScriptThatExpectsToBeRefused) {
    run({"192.168.1.2:52700", "--expect", "busy"});
    say(busyAnswer, 100ms);
    EXPECT_EQ(endings, std::vector<int>{0});
}

TEST_F(RemoteProgramTest, TakesOverOnceWhenAskedTo) {
    run({"192.168.1.2:52700", "--take-over", "--send", "mute 1"});
    receiver.taken();
    say(busyAnswer, 100ms);
    EXPECT_EQ(receiver.taken(), (Datagrams{{0x01, 0x25}, hello}));
    say(pong, 100ms);
    EXPECT_EQ(receiver.taken(), (Datagrams{{0x01, 0x04, 0x00}}));
    runtime.runFor(5s); // lost
    receiver.taken();
    say(busyAnswer, 10ms);
    EXPECT_EQ(receiver.taken(), Datagrams{});
}

TEST_F(RemoteProgramTest, PrintsALineForEachMessageWhenWatching) {
    run({"192.168.1.2:52700", "--watch"});
    say(pong);
    say({0x01, 0x1D, 0x01, 0x00}, 10s);
    EXPECT_EQ(printed, (Lines{"state connected", "pong", "transport play=on record=off", "state lost"}));
    EXPECT_TRUE(endings.empty());
}

TEST_F(RemoteProgramTest, EndsAWatchThatNothingAnswers) {
    run({"192.168.1.2:52700", "--watch", "--timeout", "0.5"});
    runtime.runFor(499ms);
    EXPECT_TRUE(endings.empty());
    runtime.runFor(1ms);
    EXPECT_EQ(endings, std::vector<int>{1});
    EXPECT_EQ(complaints, Lines{"nothing answered within 0.5 s"});
    EXPECT_TRUE(printed.empty());
}

TEST_F(RemoteProgramTest, ComplainsInTheUsersLanguage) {
    japanese = true;
    run({"192.168.1.2:52700", "--watch"});
    runtime.runFor(2s);
    EXPECT_EQ(complaints, Lines{"2 s 以内に応答がありませんでした"});
    complaints.clear();
    run({"192.168.1.2:52700", "--expect", "busy"});
    say(pong, 3s);
    EXPECT_EQ(complaints, Lines{"2 s 以内に満たされませんでした: busy (該当する行はありませんでした)"});
}

TEST_F(RemoteProgramTest, EndsAWatchThatFindsNoReceiver) {
    run({"--watch"});
    runtime.runFor(2s);
    EXPECT_EQ(endings, std::vector<int>{1});
    EXPECT_EQ(complaints, Lines{"nothing answered within 2 s"});
}

TEST_F(RemoteProgramTest, WatchesAReceiverThatRefusesIt) {
    run({"192.168.1.2:52700", "--watch"});
    say(busyAnswer, 10s);
    EXPECT_TRUE(endings.empty());
}

TEST_F(RemoteProgramTest, TakesTheFirstReceiverThatItFinds) {
    browser.services = {{"Studio", "192.168.1.2", 52700}, {"Other", "192.168.1.9", 52700}};
    ScriptedReceiver other(runtime, network.host("192.168.1.9"), 52700);
    run({"--watch"});
    EXPECT_EQ(browser.askedFor, "_lumbrine._udp.");
    const bool first = receiver.taken() == Datagrams{hello};
    const bool second = other.taken() == Datagrams{hello};
    EXPECT_NE(first, second);
}

TEST_F(RemoteProgramTest, SaysWhenThereIsNothingToSearchWith) {
    browser.there = false;
    run({"--watch"});
    EXPECT_EQ(endings, std::vector<int>{1});
    EXPECT_EQ(complaints, Lines{"nothing on this computer can look for receivers; name one as host:port"});
}

TEST_F(RemoteProgramTest, SaysWhenTheHostIsUnknown) {
    run({"nowhere.invalid:1", "--watch"});
    EXPECT_EQ(endings, std::vector<int>{1});
    EXPECT_EQ(complaints, Lines{"no way to nowhere.invalid:1"});
}

TEST_F(RemoteProgramTest, SurvivesAServiceThatAppearsAsItEnds) {
    browser.services = {{"Studio", "192.168.1.2", 52700}};
    auto arguments = parseArguments({"--watch"}, "1.2.3");
    program = std::make_unique<RemoteProgram>(
        RemoteSurroundings{runtime, network.host("192.168.1.7"), browser, &secrets, nullptr, Bilingual(false),
                           [](const std::string&) {}, [](const std::string&) {}, [](int) {}},
        *std::move(arguments));
    program->start();
    program.reset();
    runtime.runFor(1s);
    EXPECT_EQ(receiver.taken(), Datagrams{});
}

class OneKeyTerminal final : public Terminal {
public:
    std::optional<Key> poll() override { return std::exchange(next, std::nullopt); }
    int rows() override { return 24; }
    int columns() override { return 80; }
    void draw(const Canvas& canvas) override { title = canvas.line(0); }
    void forget() override {}

    std::optional<Key> next;
    std::string title;
};

TEST_F(RemoteProgramTest, ShowsTheViewUntilItIsQuit) {
    OneKeyTerminal terminal;
    browser.services = {{"Studio", "192.168.1.2", 52700}};
    run({}, &terminal);
    runtime.runFor(100ms);
    EXPECT_THAT(terminal.title, ::testing::HasSubstr("Studio (192.168.1.2:52700)"));
    terminal.next = Key{SpecialKey::none, 'q'};
    runtime.runFor(100ms);
    EXPECT_EQ(endings, std::vector<int>{0});
}

} // namespace
} // namespace lumbrine::remote
