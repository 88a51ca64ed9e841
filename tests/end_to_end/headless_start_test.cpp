// How lumbrine-headless starts: what it prints, what it is asked on the command line, and what it does without.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/host_ports.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/interop/private_avahi.h"
#include "tests/interop/private_jack.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>

namespace lumbrine::end_to_end {
namespace {

using interop::ChildProcess;
using interop::CommandResult;
using interop::PrivateAvahi;
using interop::PrivateJack;
using interop::runCommand;
using interop::waitUntil;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const Bytes hello{0x01, 0x00};
const Bytes pong{0x01, 0x7F};

bool answers(const ReceiverProcess& receiver) {
    ClientSocket client(receiver.port);
    client.send(hello);
    return client.hears(pong);
}

// A computer with an ALSA sequencer has MIDI without JACK as well.
bool hasMIDIWithoutJack() {
    return std::filesystem::exists("/dev/snd/seq");
}

TEST(HeadlessStart, LogsEachStepInEnglish) {
    const PrivateJack jack;
    const ReceiverProcess receiver({.language = "en"});
    ASSERT_TRUE(receiver.logs("Bonjour"));
    EXPECT_THAT(receiver.log(), ElementsAre("✓ Virtual MIDI 'Lumbrine' + 'Lumbrine B' created (ch 1-8 + 9-16)",
                                            "✓ UDP listening on :" + std::to_string(receiver.port),
                                            "⚠️ Bonjour advertising off (QV_NO_BONJOUR experimental mode)"));
    EXPECT_THAT(jack.shortNames("output", "midi"), testing::UnorderedElementsAre("Lumbrine", "Lumbrine B"));
    EXPECT_THAT(jack.shortNames("input", "midi"), testing::UnorderedElementsAre("Lumbrine", "Lumbrine B"));
}

TEST(HeadlessStart, LogsEachStepInJapanese) {
    const PrivateJack jack;
    const ReceiverProcess receiver({.language = "ja"});
    ASSERT_TRUE(receiver.logs("Bonjour"));
    EXPECT_THAT(receiver.log(), ElementsAre("✓ 仮想MIDI 'Lumbrine' + 'Lumbrine B' 生成（8ch＋9〜16ch）",
                                            "✓ UDP 受信開始 :" + std::to_string(receiver.port),
                                            "⚠️ Bonjour 広告なし（QV_NO_BONJOUR 実験モード）"));
}

TEST(HeadlessStart, ServesItsClientWithoutAnyMIDI) {
    if (hasMIDIWithoutJack()) GTEST_SKIP() << "this computer has an ALSA sequencer";
    const ReceiverProcess receiver({.jack = noJack});
    ASSERT_TRUE(receiver.logs("Bonjour"));
    EXPECT_THAT(receiver.log(), ElementsAre(StartsWith("✗ MIDI failed: MIDIClientCreateWithBlock failed: "),
                                            "✓ UDP listening on :" + std::to_string(receiver.port),
                                            "⚠️ Bonjour advertising off (QV_NO_BONJOUR experimental mode)"));
    EXPECT_TRUE(answers(receiver));
}

TEST(HeadlessStart, EndsWithStatusOneWhenAnotherProgramHasItsPort) {
    const PrivateJack jack;
    const PortHolder other;
    ReceiverProcess receiver({.port = other.port()});
    EXPECT_EQ(receiver.process.wait(interop::patience), 1);
    EXPECT_THAT(receiver.log(), Contains("✗ UDP failed: bind: Address already in use"));
    EXPECT_THAT(receiver.log(),
                Contains(StartsWith("lumbrine-headless: UDP port " + std::to_string(other.port()) + " is taken by ")));
}

TEST(HeadlessStart, LeavesThePortToTheReceiverThatHasIt) {
    const ReceiverProcess first({.jack = noJack});
    ReceiverProcess second({.port = first.port, .jack = noJack});
    EXPECT_EQ(second.process.wait(interop::patience), 1);
    EXPECT_THAT(second.log(), Contains(HasSubstr("is taken by lumbrine-headless (process " +
                                                 std::to_string(first.process.id()) + ")")));
    EXPECT_TRUE(answers(first));
}

TEST(HeadlessStart, WritesEachLineIntoAPipeAtOnce) {
    const interop::TemporaryFolder folder;
    const std::string pipe = folder.path / "log";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const std::uint16_t port = freePort();
    ChildProcess receiver({"sh", "-c", "exec \"$0\" > \"$1\"", headlessProgram, pipe},
                          {.environment = environmentFor({.port = port, .jack = noJack})});

    std::string text;
    const auto lineComes = [&](const std::string& line) {
        return waitUntil([&] {
            std::array<char, 4096> chunk;
            const auto length = ::read(reader, chunk.data(), chunk.size());
            if (length > 0) text.append(chunk.data(), static_cast<std::size_t>(length));
            return text.find(line + "\n") != std::string::npos;
        });
    };
    EXPECT_TRUE(lineComes("✓ UDP listening on :" + std::to_string(port))) << text;
    EXPECT_TRUE(lineComes("⚠️ Bonjour advertising off (QV_NO_BONJOUR experimental mode)")) << text;
    ClientSocket(port).send(hello);
    EXPECT_TRUE(lineComes("iOS connected: ::ffff:127.0.0.1")) << text;
    EXPECT_TRUE(receiver.running());
    ::close(reader);
}

TEST(HeadlessStart, AnswersQuestionsAboutItself) {
    const CommandResult help = runCommand({headlessProgram, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, StartsWith("Usage: lumbrine-headless [--check [--save FILE] | --pair "));
    for (const char* variable :
         {"QV_PORT", "QV_NO_BONJOUR", "LUMBRINE_CLIENTS", "QV_DEBUG", "LUMBRINE_BLACKBOX", "LANGUAGE"})
        EXPECT_THAT(help.output, HasSubstr(variable));
    const CommandResult version = runCommand({headlessProgram, "--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output, "lumbrine-headless " LUMBRINE_VERSION "\n");
}

TEST(HeadlessStart, RefusesAnArgumentThatItDoesNotKnow) {
    const CommandResult refused = runCommand({headlessProgram, "--loud"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.output, StartsWith("lumbrine-headless: unknown argument '--loud'\n"));
}

TEST(HeadlessStart, IsFoundOnTheNetworkUnderTheNameThatItLogs) {
    if (!PrivateAvahi::possible()) GTEST_SKIP() << "an Avahi daemon of our own wants to be root";
    const PrivateAvahi avahi;
    const ReceiverProcess receiver({.announced = true, .jack = noJack});
    const std::string beginning = "✓ Bonjour advertising: ";
    ASSERT_TRUE(receiver.logs(beginning));
    const std::string line = receiver.log().back();
    ASSERT_THAT(line, StartsWith(beginning));

    const auto service = avahi.find("_lumbrine._udp", line.substr(beginning.size()));
    ASSERT_TRUE(service.has_value());
    EXPECT_EQ(service->port, receiver.port);
}

} // namespace
} // namespace lumbrine::end_to_end
