// The programs beside a JACK server that stands still: it answers nobody and lets go of nobody.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/deadlines.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/end_to_end/simulator_process.h"
#include "tests/interop/private_jack.h"
#include "tests/interop/waiting.h"

#include <csignal>
#include <filesystem>
#include <fstream>

namespace lumbrine::end_to_end {
namespace {

using interop::ChildProcess;
using interop::JackMode;
using interop::PrivateJack;
using interop::waitUntil;

class StoppedJack : public testing::TestWithParam<JackMode> {
protected:
    ~StoppedJack() override { jack.kill(); } // it cannot end in order

    static void expectItEndsAtOnce(ChildProcess& receiver) {
        receiver.signal(SIGTERM);
        EXPECT_EQ(receiver.wait(ending), 0) << receiver.output();
    }

    PrivateJack jack{{.mode = GetParam()}};
};

bool hasThread(pid_t process, const std::string& name) {
    for (const auto& task : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::string found;
        if (std::getline(std::ifstream(task.path() / "comm"), found) && found == name) return true;
    }
    return false;
}

TEST_P(StoppedJack, AtTheStartKeepsTheReceiverFromNothingElse) {
    jack.freeze();
    ReceiverProcess receiver;
    EXPECT_TRUE(receiver.logs("✗ MIDI failed")) << receiver.process.output();
    ClientSocket client(receiver.port);
    client.send(Bytes{0x01, 0x00});
    EXPECT_TRUE(client.hears({0x01, 0x7F}));
    expectItEndsAtOnce(receiver.process);
}

TEST_P(StoppedJack, DoesNotHoldUpTheEndWhileTheReceiverWaitsForItsAnswer) {
    jack.freeze();
    ChildProcess receiver({headlessProgram}, {.environment = environmentFor({.port = freePort()})});
    ASSERT_TRUE(waitUntil([&] { return hasThread(receiver.id(), "jack server"); }));
    expectItEndsAtOnce(receiver);
}

TEST_P(StoppedJack, DoesNotHoldUpTheEndOfAReceiverThatHasItsPorts) {
    ReceiverProcess receiver;
    ASSERT_TRUE(receiver.logs("✓ Virtual MIDI")) << receiver.process.output();
    jack.freeze();
    ClientSocket client(receiver.port);
    client.send(Bytes{0x01, 0x00});
    EXPECT_TRUE(client.hears({0x01, 0x7F}));
    expectItEndsAtOnce(receiver.process);
}

TEST_P(StoppedJack, HoldsUpNeitherTheClientNorTheEndOfAReceiverThatHasAskedIt) {
    ReceiverProcess receiver;
    ASSERT_TRUE(receiver.logs("✓ Virtual MIDI")) << receiver.process.output();
    jack.freeze();
    ClientSocket client(receiver.port);
    const auto answers = [&] {
        client.send(Bytes{0x01, 0x00});
        return client.hears({0x01, 0x7F}, std::chrono::seconds(1));
    };
    // It looks once a second whether the server runs its clients, and asks the server when it does not.
    EXPECT_TRUE(interop::holdsFor(std::chrono::milliseconds(2500), answers));
    expectItEndsAtOnce(receiver.process);
}

TEST_P(StoppedJack, DoesNotHoldUpTheEndOfTheSimulatedProTools) {
    SimulatorProcess proTools({"--surfaces", "2", "--tracks", "8", "--no-scripting"});
    ASSERT_TRUE(proTools.prints("stopped |")) << proTools.output(); // its ports are there then
    jack.freeze();
    EXPECT_TRUE(proTools.end(ending)) << proTools.output();
}

INSTANTIATE_TEST_SUITE_P(Servers, StoppedJack, testing::Values(JackMode::synchronous, JackMode::asynchronous),
                         interop::nameOfMode<testing::TestParamInfo<JackMode>>);

} // namespace
} // namespace lumbrine::end_to_end
