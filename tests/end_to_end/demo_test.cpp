// lumbrine-demo without a terminal.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/deadlines.h"
#include "tests/end_to_end/keyboard.h"
#include "tests/interop/child_process.h"
#include "tests/interop/waiting.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

namespace lumbrine::end_to_end {
namespace {

using interop::ChildProcess;
using interop::waitUntil;
using testing::HasSubstr;

const std::string program = LUMBRINE_BIN_DIR "/lumbrine-demo";

ChildProcess::Setup onPort(std::uint16_t port, const std::string& language = "en") {
    return {.environment = {{"QV_PORT", std::to_string(port)}, {"QV_NO_BONJOUR", "1"}, {"LANGUAGE", language}}};
}

bool prints(const ChildProcess& demo, const std::string& text) {
    return waitUntil([&] { return demo.output().find(text) != std::string::npos; });
}

// A TCP port of this computer on which another program listens.
class ServiceOfAnother {
public:
    ServiceOfAnother() : fd(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        EXPECT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&address), length), 0);
        EXPECT_EQ(::listen(fd, 4), 0);
        EXPECT_EQ(::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length), 0);
        number = ntohs(address.sin_port);
    }
    ServiceOfAnother(const ServiceOfAnother&) = delete;
    ServiceOfAnother& operator=(const ServiceOfAnother&) = delete;
    ~ServiceOfAnother() { ::close(fd); }

    std::uint16_t port() const { return number; }

    bool wasCalled() const {
        const int caller = ::accept4(fd, nullptr, nullptr, SOCK_CLOEXEC);
        if (caller >= 0) ::close(caller);
        return caller >= 0;
    }

private:
    const int fd;
    std::uint16_t number = 0;
};

TEST(Demo, PlaysItsTourByItselfAndEnds) {
    ChildProcess demo({program, "--tour"}, onPort(freePort()));
    EXPECT_EQ(demo.wait(tour), 0) << demo.output();
    EXPECT_THAT(demo.output(),
                testing::ContainsRegex("Simulated session: 40 tracks \\([0-9]+ hidden\\) on 2 HUI surfaces\n"));
    EXPECT_THAT(demo.output(), HasSubstr("receiver   ✓ Mapped all 37 tracks\n"));
    EXPECT_THAT(demo.output(), HasSubstr("Pro Tools  automation of \"Snare Btm\" is touch\n"));
    EXPECT_THAT(demo.output(), HasSubstr("Pro Tools  tracks 21-36 are on the surfaces\n"));
    EXPECT_THAT(demo.output(), HasSubstr("receiver   ✓ Applied faders to 3 group tracks outside the window\n"));
    EXPECT_THAT(demo.output(), HasSubstr("Round trips through the receiver and the simulated Pro Tools"));
}

TEST(Demo, ServesAClientUntilItIsEnded) {
    const std::uint16_t port = freePort();
    ChildProcess demo({program, "--tracks", "5", "--surfaces", "1", "--scripting-port", "0"}, onPort(port));
    ASSERT_TRUE(prints(demo, "Connect a client: lumbrine-remote 127.0.0.1:" + std::to_string(port))) << demo.output();
    ClientSocket client(port);
    client.send(Bytes{0x01, 0x00});
    EXPECT_TRUE(client.hears({0x01, 0x7F}));
    EXPECT_TRUE(client.hears({0x01, 0x10, 0x00, 'K', 'i', 'c', 'k'}));
    EXPECT_TRUE(prints(demo, "Connected to Pro Tools' official API")) << demo.output();
    EXPECT_TRUE(prints(demo, "Got 5 track names (full names via PTSL)")) << demo.output();
    demo.signal(SIGTERM);
    EXPECT_EQ(demo.wait(interop::patience), 0) << demo.output();
}

TEST(Demo, SpeaksJapaneseWithAUserWhoPrefersIt) {
    Keyboard keyboard;
    ChildProcess demo(keyboard.command(program, {"--tracks", "5", "--surfaces", "1", "--no-scripting"}),
                      onPort(freePort(), "ja"));
    ASSERT_TRUE(prints(demo, "Pro Tools での操作をここに入力できます（help で一覧）\n")) << demo.output();
    EXPECT_THAT(demo.output(), HasSubstr("模擬セッション: 5 トラック、HUI サーフェス 1 台\n公式 API なし\n"));
    keyboard.type("mute 2");
    EXPECT_TRUE(prints(demo, "Pro Tools での操作: mute 2\n")) << demo.output();
    keyboard.type("quit");
    EXPECT_EQ(demo.wait(interop::patience), 0) << demo.output();
}

TEST(Demo, BeginsWithoutItsPortsAndReconnectsWhenAskedTo) {
    Keyboard keyboard;
    ChildProcess demo(
        keyboard.command(program, {"--ports-lost", "--tracks", "5", "--surfaces", "1", "--scripting-port", "0"}),
        onPort(freePort()));
    ASSERT_TRUE(prints(demo, "Pro Tools does not use the MIDI ports; type: reconnect\n")) << demo.output();
    keyboard.type("reconnect");
    ASSERT_TRUE(prints(demo, "♥ ping #1 received")) << demo.output();
    for (const char* line :
         {"→ Opening and closing PT's Peripherals dialog so it re-grabs the ports…\n",
          "Pro Tools: OK pressed: the alert \"Lost communication with HUI\" is gone\n",
          "Pro Tools: menu item \"Peripherals...\" chosen\n", "Pro Tools: tab \"MIDI Controllers\" chosen\n",
          "Pro Tools: OK pressed: the Peripherals dialog is closed, the MIDI ports are taken\n"})
        EXPECT_THAT(demo.output(), HasSubstr(line));
    EXPECT_TRUE(prints(demo, "✓ Opened and closed the Peripherals dialog (PT will re-grab the MIDI ports)\n"));
    EXPECT_TRUE(prints(demo, "✓ Mapped all 5 tracks\n")) << demo.output();
    keyboard.type("reconnect");
    EXPECT_TRUE(prints(demo, "Already connected to Pro Tools\n")) << demo.output();
    keyboard.type("comment 1 D112");
    keyboard.type("fader 1 2");
    EXPECT_TRUE(prints(demo, "usage: fader TRACK VALUE\n")) << demo.output();
    keyboard.type("quit");
    EXPECT_EQ(demo.wait(interop::patience), 0) << demo.output();
    EXPECT_THAT(demo.output(), testing::Not(HasSubstr("Still not connected")));
}

TEST(Demo, KeepsAwayFromAnotherProgramOnItsScriptingPort) {
    const ServiceOfAnother other;
    ChildProcess demo({program, "--tracks", "5", "--scripting-port", std::to_string(other.port())}, onPort(freePort()));
    EXPECT_TRUE(prints(demo, "Port " + std::to_string(other.port()) + " is taken: there is no scripting service\n"));
    EXPECT_TRUE(prints(demo, "Track colors: unavailable (")) << demo.output();
    EXPECT_FALSE(other.wasCalled());
}

TEST(Demo, EndsInTheMiddleOfItsTour) {
    ChildProcess demo({program, "--tour"}, onPort(freePort()));
    ASSERT_TRUE(prints(demo, "phone A")) << demo.output();
    demo.signal(SIGTERM);
    ASSERT_TRUE(demo.wait(interop::patience).has_value());
    EXPECT_THAT(demo.output(), testing::Not(HasSubstr("Round trips")));
}

} // namespace
} // namespace lumbrine::end_to_end
