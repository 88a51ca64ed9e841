// lumbrine-demo without a terminal.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/deadlines.h"
#include "tests/interop/child_process.h"
#include "tests/interop/waiting.h"

#include <csignal>

namespace lumbrine::end_to_end {
namespace {

using interop::ChildProcess;
using interop::waitUntil;
using testing::HasSubstr;

const std::string program = LUMBRINE_BIN_DIR "/lumbrine-demo";

ChildProcess::Setup onPort(std::uint16_t port) {
    return {.environment = {{"QV_PORT", std::to_string(port)}, {"QV_NO_BONJOUR", "1"}, {"LANGUAGE", "en"}}};
}

bool prints(const ChildProcess& demo, const std::string& text) {
    return waitUntil([&] { return demo.output().find(text) != std::string::npos; });
}

TEST(Demo, PlaysItsTourByItselfAndEnds) {
    ChildProcess demo({program, "--tour"}, onPort(freePort()));
    EXPECT_EQ(demo.wait(tour), 0) << demo.output();
    EXPECT_THAT(demo.output(), HasSubstr("Simulated session: 40 tracks on 2 HUI surfaces\n"));
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

TEST(Demo, EndsInTheMiddleOfItsTour) {
    ChildProcess demo({program, "--tour"}, onPort(freePort()));
    ASSERT_TRUE(prints(demo, "phone A")) << demo.output();
    demo.signal(SIGTERM);
    ASSERT_TRUE(demo.wait(interop::patience).has_value());
    EXPECT_THAT(demo.output(), testing::Not(HasSubstr("Round trips")));
}

} // namespace
} // namespace lumbrine::end_to_end
