// A whole session: lumbrine-remote talks to lumbrine-headless, which plays lumbrine-simulator on real MIDI ports.
#include "tests/end_to_end/receiver_process.h"
#include "tests/end_to_end/simulator_process.h"
#include "tests/interop/private_jack.h"
#include "tests/interop/waiting.h"

#include <cmath>
#include <memory>

namespace lumbrine::end_to_end {
namespace {

using interop::CommandResult;
using interop::waitUntil;

// The receiver reads a new session's tracks for some seconds, so the tests share one studio. Each leaves it working.
class Session : public testing::Test {
protected:
    static void SetUpTestSuite() {
        studio = std::make_unique<Studio>();
        startSimulator();
        ASSERT_EQ(remote({"--expect", "bank first=1 tracks=17 strips=16"}).status, 0) << story();
    }
    static void TearDownTestSuite() { studio.reset(); }

    // The same device each time, so that one script after another is let in.
    static CommandResult remote(const std::vector<std::string>& script) {
        std::vector<std::string> command{LUMBRINE_BIN_DIR "/lumbrine-remote",
                                         "127.0.0.1:" + std::to_string(studio->receiver.port),
                                         "--token",
                                         "7",
                                         "--timeout",
                                         "15"};
        command.insert(command.end(), script.begin(), script.end());
        return interop::runCommand(command);
    }

    static void startSimulator() {
        const std::vector<std::string> options{"--surfaces",   "2", "--tracks",      "17",
                                               "--latency-ms", "5", "--no-scripting"};
        studio->simulator = std::make_unique<SimulatorProcess>(options);
    }

    // Whether a client's move of that fader gets to the simulated session, and a move in the session to the client.
    static bool faderWorksBothWays(int strip) {
        const std::string number = std::to_string(strip);
        const CommandResult there = remote({"--send", "touch " + number, "--send", "fader " + number + " 0.3", "--send",
                                            "release " + number, "--expect", "fader " + number + " ~0.3"});
        if (there.status != 0) return false;
        const auto isAt = [&](double wanted) {
            const auto track = studio->simulator->track(strip);
            return track && std::abs(track->fader - wanted) < 0.005;
        };
        if (!waitUntil([&] { return isAt(0.3); }, std::chrono::seconds(2))) return false;
        studio->simulator->type("fader " + number + " 0.81");
        return remote({"--expect", "fader " + number + " ~0.81"}).status == 0;
    }

    // What both programs have told so far.
    static std::string story() {
        return studio->receiver.process.output() + "---- the simulated Pro Tools\n" + studio->simulator->output();
    }

    static std::string lights(int track) {
        return studio->simulator->track(track).value_or(SimulatorProcess::Track{}).lights;
    }

    struct Studio {
        interop::PrivateJack jack;
        ReceiverProcess receiver;
        std::unique_ptr<SimulatorProcess> simulator;
    };
    static inline std::unique_ptr<Studio> studio;
};

TEST_F(Session, MovesFadersOnBothSurfaces) {
    EXPECT_TRUE(faderWorksBothWays(3)) << story();
    EXPECT_TRUE(faderWorksBothWays(11)) << story();
}

TEST_F(Session, PressesTheButtonsOfAStripOnEachSurface) {
    for (const std::string strip : {"2", "12"}) {
        const auto pressAndExpect = [&](const std::string& button, const std::string& shown) {
            const CommandResult result = remote({"--send", button + " " + strip, "--expect", shown});
            EXPECT_EQ(result.status, 0) << result.output;
        };
        pressAndExpect("mute", "switches " + strip + "=M--");
        EXPECT_EQ(lights(std::stoi(strip)), "M---");
        pressAndExpect("mute", "switches " + strip + "=---");
        pressAndExpect("solo", "switches " + strip + "=-S-");
        EXPECT_EQ(lights(std::stoi(strip)), "-S--");
        pressAndExpect("solo", "switches " + strip + "=---");
        pressAndExpect("rec", "switches " + strip + "=--R");
        EXPECT_EQ(lights(std::stoi(strip)), "--R-");
        pressAndExpect("rec", "switches " + strip + "=---");
        pressAndExpect("select", "selects " + strip + "=on");
        EXPECT_EQ(lights(std::stoi(strip)), "---*");
    }
}

TEST_F(Session, GoesOnWithAnotherProToolsWhenOneHasEnded) {
    studio->simulator->end();
    EXPECT_EQ(remote({"--send", "hello", "--expect", "pong"}).status, 0);
    startSimulator();
    EXPECT_TRUE(studio->simulator->prints("A on, B on")) << story();
    EXPECT_TRUE(faderWorksBothWays(4)) << story();
    EXPECT_TRUE(faderWorksBothWays(12)) << story();
}

// A synchronous JACK server loses the signal between two clients now and then when both come back at the same moment,
// and stands still from then on, with all clients waiting for their turn. That one is killed, too. The busier the
// computer is, the more often that happens.
TEST_F(Session, GoesOnWhenTheJACKServerIsBackAfterACrash) {
    bool works = false;
    for (int crash = 0; crash < 5 && !works; ++crash) {
        studio->jack.kill();
        EXPECT_EQ(remote({"--send", "hello", "--expect", "pong"}).status, 0);
        EXPECT_TRUE(studio->receiver.process.running());
        for (const pid_t process : {studio->receiver.process.id(), studio->simulator->id()})
            EXPECT_TRUE(waitUntil([process] { return !interop::holdsJackSemaphores(process); }));
        studio->jack.start();
        works = waitUntil([] { return studio->jack.hasPort("Lumbrine:Lumbrine B"); }, std::chrono::seconds(10)) &&
                waitUntil([] { return faderWorksBothWays(5); }, std::chrono::seconds(10));
    }
    EXPECT_TRUE(works && faderWorksBothWays(13)) << story();
}

} // namespace
} // namespace lumbrine::end_to_end
