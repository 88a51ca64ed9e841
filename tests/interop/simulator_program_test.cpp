// lumbrine-simulator as a program: its command line, and its two surfaces on a real JACK server.
#include "tests/interop/jack_rig.h"
#include "tests/interop/waiting.h"

#include <csignal>

namespace lumbrine::interop {
namespace {

using testing::HasSubstr;

const std::string program = LUMBRINE_BIN_DIR "/lumbrine-simulator";
const Bytes ping{0x90, 0x00, 0x00};
const Bytes reply{0x90, 0x00, 0x7F};

TEST(SimulatorProgram, PrintsItsOptionsAndVersion) {
    const CommandResult help = runCommand({program, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, HasSubstr("--end-of-session blank|fill"));
    const CommandResult version = runCommand({program, "--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, HasSubstr("lumbrine-simulator "));
}

TEST(SimulatorProgram, RefusesWhatItDoesNotKnowWithStatusTwo) {
    EXPECT_EQ(runCommand({program, "--fast"}).status, 2);
    EXPECT_EQ(runCommand({program, "--surfaces", "3"}).status, 2);
}

// Ports as the receiver has them, which answer each ping.
class AnsweringRig : public JackRig {
public:
    AnsweringRig() {
        for (Surface* surface : {&a, &b}) {
            EXPECT_EQ(services.createClient(surface->name, surface->client), 0);
            EXPECT_EQ(services.createSource(surface->client, surface->name, surface->source), 0);
            EXPECT_EQ(services.createDestination(
                          surface->client, surface->name,
                          [this, surface](ByteView packet) {
                              surface->atReceiver.add(packet);
                              if (Bytes(packet.begin(), packet.end()) == ping) send(*surface, reply);
                          },
                          surface->destination),
                      0);
        }
    }
};

TEST(SimulatorProgram, FindsTwoSurfacesActsOnThemAndEndsCleanly) {
    AnsweringRig rig;
    ChildProcess simulator({program, "--surfaces", "2", "--tracks", "24", "--latency-ms", "5", "--no-scripting"});
    ASSERT_TRUE(waitUntil([&] { return simulator.output().find("A on, B on | 1-16 of ") != std::string::npos; }))
        << simulator.output();
    EXPECT_THAT(simulator.output(), HasSubstr("Kick Kick Snar Snar HiHa"));

    rig.send(rig.a, Bytes{0xB0, 0x0F, 0x0E});
    rig.send(rig.a, Bytes{0xB0, 0x2F, 0x44});
    EXPECT_TRUE(waitUntil([&] { return simulator.output().find("| playing |") != std::string::npos; }))
        << simulator.output();

    simulator.signal(SIGTERM);
    EXPECT_EQ(simulator.wait(patience), 0) << simulator.output();
}

TEST(SimulatorProgram, ObeysLinesOnItsStandardInput) {
    AnsweringRig rig;
    const CommandResult result = runCommand(
        {"sh", "-c", "printf 'fly\\nrename 1 Vox\\ntracks\\nquit\\n' | " + program + " --tracks 3 --no-scripting"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("there is no command fly; help lists them\n"));
    EXPECT_THAT(result.output, HasSubstr("mono    Vox\n"));
}

} // namespace
} // namespace lumbrine::interop
