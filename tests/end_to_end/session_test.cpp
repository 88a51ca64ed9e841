// A whole session: lumbrine-remote talks to lumbrine-headless, which plays lumbrine-simulator on real MIDI ports.
#include "tests/end_to_end/receiver_process.h"
#include "tests/end_to_end/simulator_process.h"
#include "tests/interop/private_jack.h"
#include "tests/interop/waiting.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace lumbrine::end_to_end {
namespace {

using interop::CommandResult;
using interop::waitUntil;

// The receiver, the simulated Pro Tools and a client's programs on one JACK server.
class Studio {
public:
    explicit Studio(interop::JackMode mode) : jack({.mode = mode}) { startSimulator(); }

    // The same device each time, so that one script after another is let in.
    CommandResult remote(const std::vector<std::string>& script) const {
        std::vector<std::string> command{LUMBRINE_BIN_DIR "/lumbrine-remote",
                                         "127.0.0.1:" + std::to_string(receiver.port),
                                         "--token",
                                         "7",
                                         "--timeout",
                                         "60"};
        command.insert(command.end(), script.begin(), script.end());
        return interop::runCommand(command, std::chrono::minutes(1));
    }

    void startSimulator() {
        const std::vector<std::string> options{"--surfaces",   "2", "--tracks",      std::to_string(trackCount),
                                               "--latency-ms", "5", "--no-scripting"};
        simulator = std::make_unique<SimulatorProcess>(options);
    }

    // Whether a client's move of that fader gets to the simulated session, and a move in the session to the client.
    bool faderWorksBothWays(int strip) {
        const std::string number = std::to_string(strip);
        const CommandResult there = remote({"--send", "touch " + number, "--send", "fader " + number + " 0.3", "--send",
                                            "release " + number, "--expect", "fader " + number + " ~0.3"});
        if (there.status != 0 || !waitUntil([&] { return isAt(strip, 0.3); })) return false;
        simulator->type("fader " + number + " 0.81");
        return remote({"--expect", "fader " + number + " ~0.81"}).status == 0;
    }

    // Whether a track of the session follows a finger on that strip. As a finger does it, which tells its place many
    // times: a server that is not synchronous may lose one, and with a bank message where the tracks are.
    bool fingerMoves(int strip, double place) {
        const std::string number = std::to_string(strip);
        const auto follows = [&] {
            const auto tracks = simulator->tracks(trackCount);
            return std::ranges::any_of(tracks, [place](const auto& track) { return isNear(track.fader, place); });
        };
        return waitUntil([&] {
            remote({"--send", "touch " + number, "--send", "fader " + number + " " + std::to_string(place), "--send",
                    "release " + number});
            return waitUntil(follows, std::chrono::seconds(1));
        });
    }

    bool isAt(int strip, double wanted) {
        const auto track = simulator->track(strip);
        return track && isNear(track->fader, wanted);
    }

    static bool isNear(double place, double wanted) { return std::abs(place - wanted) < 0.005; }

    // What both programs have told so far.
    std::string story() const {
        return receiver.process.output() + "---- the simulated Pro Tools\n" + simulator->output();
    }

    std::string lights(int track) { return simulator->track(track).value_or(SimulatorProcess::Track{}).lights; }

    static constexpr int trackCount = 17;

    interop::PrivateJack jack;
    ReceiverProcess receiver;
    std::unique_ptr<SimulatorProcess> simulator;
};

// The receiver reads a new session's tracks for some seconds, so the tests share one studio. Each leaves it working.
class Session : public testing::Test {
protected:
    static void SetUpTestSuite() {
        studio = std::make_unique<Studio>(interop::JackMode::synchronous);
        ASSERT_EQ(studio->remote({"--expect", "bank first=1 tracks=17 strips=16"}).status, 0) << studio->story();
    }
    static void TearDownTestSuite() { studio.reset(); }

    static inline std::unique_ptr<Studio> studio;
};

TEST_F(Session, MovesFadersOnBothSurfaces) {
    EXPECT_TRUE(studio->faderWorksBothWays(3)) << studio->story();
    EXPECT_TRUE(studio->faderWorksBothWays(11)) << studio->story();
}

TEST_F(Session, PressesTheButtonsOfAStripOnEachSurface) {
    for (const std::string strip : {"2", "12"}) {
        const auto pressAndExpect = [&](const std::string& button, const std::string& shown) {
            const CommandResult result = studio->remote({"--send", button + " " + strip, "--expect", shown});
            EXPECT_EQ(result.status, 0) << result.output;
        };
        pressAndExpect("mute", "switches " + strip + "=M--");
        EXPECT_EQ(studio->lights(std::stoi(strip)), "M---");
        pressAndExpect("mute", "switches " + strip + "=---");
        pressAndExpect("solo", "switches " + strip + "=-S-");
        EXPECT_EQ(studio->lights(std::stoi(strip)), "-S--");
        pressAndExpect("solo", "switches " + strip + "=---");
        pressAndExpect("rec", "switches " + strip + "=--R");
        EXPECT_EQ(studio->lights(std::stoi(strip)), "--R-");
        pressAndExpect("rec", "switches " + strip + "=---");
        pressAndExpect("select", "selects " + strip + "=on");
        EXPECT_EQ(studio->lights(std::stoi(strip)), "---*");
    }
}

TEST_F(Session, GoesOnWithAnotherProToolsWhenOneHasEnded) {
    studio->simulator->end();
    EXPECT_EQ(studio->remote({"--send", "hello", "--expect", "pong"}).status, 0);
    studio->startSimulator();
    EXPECT_TRUE(studio->simulator->prints("A on, B on")) << studio->story();
    EXPECT_TRUE(studio->faderWorksBothWays(4)) << studio->story();
    EXPECT_TRUE(studio->faderWorksBothWays(12)) << studio->story();
}

// Without -S, as users run it.
TEST(SessionAfterACrashOfJACK, GoesOnWhenTheServerIsBack) {
    Studio studio(interop::JackMode::asynchronous);
    ASSERT_TRUE(studio.simulator->prints("A on, B on")) << studio.story();
    studio.jack.kill();
    EXPECT_EQ(studio.remote({"--send", "hello", "--expect", "pong"}).status, 0);
    for (const pid_t process : {studio.receiver.process.id(), studio.simulator->id()})
        EXPECT_TRUE(waitUntil([process] { return !interop::holdsJackSemaphores(process); }));

    studio.jack.start();
    EXPECT_TRUE(studio.fingerMoves(5, 0.31)) << studio.story();
    EXPECT_TRUE(studio.fingerMoves(13, 0.93)) << studio.story();
}

} // namespace
} // namespace lumbrine::end_to_end
