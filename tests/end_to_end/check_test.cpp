// lumbrine-headless --check finds what is really broken: each test breaks one thing and reads the list as a user does.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/host_ports.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/interop/own_world.h"
#include "tests/interop/private_avahi.h"
#include "tests/interop/private_jack.h"

#include <csignal>

namespace lumbrine::end_to_end {
namespace {

using interop::CommandResult;
using interop::PrivateAvahi;
using interop::PrivateJack;
using testing::HasSubstr;
using testing::Not;

constexpr std::chrono::seconds limit(3);

CommandResult check(std::uint16_t port, const std::string& language = "en") {
    return interop::runCommand(
        {"env", "QV_PORT=" + std::to_string(port), "LANGUAGE=" + language, headlessProgram, "--check"}, limit);
}

// Asks until the list has the line: the receiver needs a moment to notice. The result is the last list.
CommandResult checkUntil(std::uint16_t port, const std::string& line) {
    CommandResult result;
    interop::waitUntil([&] {
        result = check(port);
        return result.output.find(line) != std::string::npos;
    });
    return result;
}

const Bytes ping{0x90, 0x00, 0x00};

TEST(Check, FindsNothingWrongWithAReceiverThatWaits) {
    const PrivateJack jack;
    const ReceiverProcess receiver;
    const CommandResult result = check(receiver.port);
    const bool isOnANetwork = result.output.find("✗ Address: This computer is on no network.\n") == std::string::npos;
    EXPECT_EQ(result.status, isOnANetwork ? 0 : 1) << result.output;
    EXPECT_THAT(result.output, HasSubstr("✓ Network port: UDP port " + std::to_string(receiver.port) + " is open.\n"));
    EXPECT_THAT(result.output, HasSubstr("✓ MIDI ports: "));
    EXPECT_THAT(result.output, HasSubstr("… Pro Tools, strips 1-8: Pro Tools has not talked to “Lumbrine” yet.\n"));
    EXPECT_THAT(result.output, HasSubstr("Receive From = Lumbrine B, Send To = Lumbrine B"));
    EXPECT_THAT(result.output, HasSubstr("… iPhone / iPad: No phone has been heard yet.\n"));
}

TEST(Check, KnowsTheAddressOfANetworkThatCameLater) {
    if (!interop::inOwnWorld()) GTEST_SKIP() << "this system permits no network of the test's own";
    const ReceiverProcess receiver({.jack = noJack});
    ASSERT_THAT(check(receiver.port).output, HasSubstr("✗ Address: This computer is on no network.\n"));
    const auto ip = [](const std::string& arguments) {
        return interop::runCommand({"sh", "-c", "ip " + arguments}).status == 0;
    };
    if (!ip("link add studio type bridge")) GTEST_SKIP() << "this system makes no network interface";
    EXPECT_TRUE(ip("link set studio up") && ip("address add 10.9.8.7/24 dev studio"));
    EXPECT_THAT(checkUntil(receiver.port, "at 10.9.8.7, port").output, HasSubstr("✓ Address: "));
    EXPECT_TRUE(ip("link del studio"));
    EXPECT_THAT(checkUntil(receiver.port, "on no network").output, HasSubstr("✗ Address: "));
}

TEST(Check, AnswersInTheLanguageOfTheUserWhoAsks) {
    const ReceiverProcess receiver({.language = "en", .jack = noJack});
    EXPECT_THAT(check(receiver.port, "ja").output, HasSubstr("✓ ネットワークポート: UDP ポート "));
}

TEST(Check, LooksAtTheComputerWhenNoReceiverRuns) {
    const PrivateJack jack;
    const PortHolder free; // somebody has another port
    const CommandResult result = check(freePort());
    EXPECT_THAT(result.output, HasSubstr("… Receiver: No receiver of yours listens on UDP port "));
    EXPECT_THAT(result.output, HasSubstr(" is free.\n"));
    EXPECT_THAT(result.output, HasSubstr("✓ MIDI system: "));
}

TEST(Check, NamesTheProgramThatHasThePort) {
    const PortHolder other;
    const CommandResult result = check(other.port());
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("✗ Network port: UDP port " + std::to_string(other.port()) + " is taken by "));
}

TEST(Check, FindsThatJackHasGoneAndComeBack) {
    PrivateJack jack;
    const ReceiverProcess receiver;
    ASSERT_THAT(check(receiver.port).output, HasSubstr("✓ MIDI ports: "));
    jack.stop();
    const CommandResult result = checkUntil(receiver.port, "✗ MIDI ports: The MIDI ports are missing");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("✗ MIDI ports: The MIDI ports are missing"));
    EXPECT_THAT(result.output, HasSubstr("? Pro Tools, strips 1-8: Not known without MIDI ports."));
    jack.start();
    EXPECT_THAT(checkUntil(receiver.port, "✓ MIDI ports: ").output, HasSubstr("✓ MIDI ports: "));
}

TEST(Check, FindsThatTheAnnouncementsDaemonHasGone) {
    if (!PrivateAvahi::possible()) GTEST_SKIP() << "the Avahi daemon runs as root only";
    PrivateAvahi avahi;
    const ReceiverProcess receiver({.announced = true, .jack = noJack});
    EXPECT_THAT(checkUntil(receiver.port, "✓ Announcement: Phones find this computer as “").output,
                HasSubstr("✓ Announcement: Phones find this computer as “"));
    avahi.killDaemon();
    const CommandResult result = checkUntil(receiver.port, "✗ Announcement: ");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("→ Start the service avahi-daemon."));
}

TEST(Check, ListsASecondReceiverOnTheNetwork) {
    if (!PrivateAvahi::possible()) GTEST_SKIP() << "the Avahi daemon runs as root only";
    const PrivateAvahi avahi;
    const ReceiverProcess receiver({.announced = true, .jack = noJack});
    const auto other = avahi.publish("Room B", "_lumbrine._udp", 52700);
    const CommandResult result = checkUntil(receiver.port, "Room B");
    EXPECT_THAT(result.output, HasSubstr("… Another receiver: “Room B” is on this network, too (127.0.0.1:52700).\n"));
    EXPECT_THAT(result.output, Not(HasSubstr("Found again")));
}

TEST(Check, KnowsThatAProgramHasTakenThePorts) {
    const PrivateJack jack;
    const ReceiverProcess receiver;
    const std::string free = "… MIDI connections: No program is connected to both ports “Lumbrine”.\n";
    EXPECT_THAT(checkUntil(receiver.port, free).output, HasSubstr(free));
    const HostPorts host("Lumbrine");
    const std::string taken = "✓ MIDI connections: A program is connected to “Lumbrine”, none to “Lumbrine B”.\n";
    EXPECT_THAT(checkUntil(receiver.port, taken).output, HasSubstr(taken));
}

TEST(Check, FindsThatTheScriptingServiceRefuses) {
    if (!interop::inOwnWorld()) GTEST_SKIP() << "somebody may offer the service here";
    const ReceiverProcess receiver({.jack = noJack});
    ClientSocket client(receiver.port);
    client.send(Bytes{0x01, 0x00}); // Hello
    client.send(Bytes{0x01, 0x0C}); // Recalibrate: asks the service as well
    const std::string missing = "? Scripting service: Full names and colours are missing: ";
    EXPECT_THAT(checkUntil(receiver.port, missing).output, HasSubstr(missing));
}

TEST(Check, FindsThatProToolsHasStoppedTalking) {
    const PrivateJack jack;
    const ReceiverProcess receiver;
    {
        HostPorts host("Lumbrine");
        const std::string heard = "✓ Pro Tools, strips 1-8: Pro Tools talks to “Lumbrine”.";
        ASSERT_TRUE(interop::waitUntil([&] {
            host.send(ping);
            return check(receiver.port).output.find(heard) != std::string::npos;
        }));
    }
    const CommandResult result = checkUntil(receiver.port, "✗ Pro Tools, strips 1-8: ");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("✗ Pro Tools, strips 1-8: Pro Tools no longer talks to “Lumbrine”.\n"));
}

TEST(Check, KnowsThePhoneAndThatItHasFallenSilent) {
    const ReceiverProcess receiver({.jack = noJack});
    ClientSocket(receiver.port).send(Bytes{0x01, 0x00});
    const std::string heard = "✓ iPhone / iPad: 127.0.0.1 is connected.\n";
    EXPECT_THAT(checkUntil(receiver.port, heard).output, HasSubstr(heard));
    const std::string silent = "… iPhone / iPad: 127.0.0.1 was connected and is silent now.\n";
    EXPECT_THAT(checkUntil(receiver.port, silent).output, HasSubstr(silent));
}

TEST(Check, FindsAReceiverThatHangs) {
    ReceiverProcess receiver({.jack = noJack});
    receiver.process.signal(SIGSTOP);
    const CommandResult result = check(receiver.port);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("✗ Receiver: The receiver on UDP port "));
    receiver.process.signal(SIGCONT);
}

// ---- For those who help

TEST(Check, SavesAFileWithTheRecordingAndTheList) {
    const interop::TemporaryFolder folder;
    const std::string recording = folder.path / "blackbox", saved = folder.path / "report";
    const ReceiverProcess receiver({.jack = noJack, .blackbox = recording});
    const std::string port = std::to_string(receiver.port);

    interop::runCommand({"env", "QV_PORT=" + port, "LANGUAGE=en", "LUMBRINE_BLACKBOX=" + recording, headlessProgram,
                         "--check", "--save", saved},
                        limit);

    const CommandResult shown =
        interop::runCommand({LUMBRINE_BIN_DIR "/lumbrine-blackbox", "-f", saved, "show", "--kind", "log"});
    EXPECT_THAT(shown.output, HasSubstr("UDP listening on :" + port));
    EXPECT_THAT(shown.output, HasSubstr("check: ✓ Network port: UDP port " + port + " is open."));
}

TEST(Check, SaysWhyItSavesNothing) {
    const interop::TemporaryFolder folder;
    const std::string recording = folder.path / "none";
    const CommandResult result =
        interop::runCommand({"env", "QV_PORT=52998", "LANGUAGE=en", "LUMBRINE_BLACKBOX=" + recording, headlessProgram,
                             "--check", "--save", folder.path / "report"},
                            limit);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("lumbrine-headless: " + recording));
}

} // namespace
} // namespace lumbrine::end_to_end
